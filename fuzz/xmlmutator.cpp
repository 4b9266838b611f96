// SPDX-License-Identifier: MIT
#include "xmlmutator.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

/** The bytes from `begin` to before `end`. */
struct Range
{
    std::size_t begin;
    std::size_t end;
};

struct Attribute
{
    Range whole; ///< with the blanks before it
    Range name;
    Range value; ///< without its quotes
};

struct Tag
{
    Range whole;
    Range name;
    bool isEnd;
    std::vector<Attribute> attributes;
};

struct Element
{
    Range whole;
    std::size_t tag; ///< its start tag
    std::size_t endTag; ///< the same as `tag` if it is empty
};

constexpr char blanks[] = " \t\r\n";

/** What a text of XML consists of, as far as it can be seen. */
class Parts
{
public:
    explicit Parts(std::string const& xml)
        : m_xml(xml)
    {
        std::size_t at = 0;
        while (at < xml.size()) {
            std::size_t const end = endOfNext(at);
            if (xml[at] == '<' && end - at > 2 && xml[at + 1] != '!' && xml[at + 1] != '?')
                addTag({at, end});
            else if (xml[at] != '<')
                texts.push_back({at, end});
            at = end;
        }
    }

    std::vector<Tag> tags;
    std::vector<Range> texts;
    std::vector<Element> elements;

private:
    std::size_t behind(char const* delimiter, std::size_t from) const
    {
        std::size_t const at = m_xml.find(delimiter, from);
        return at == std::string::npos ? m_xml.size() : at + std::strlen(delimiter);
    }

    /** Where the tag, the text or whatever begins at `at` ends. */
    std::size_t endOfNext(std::size_t at) const
    {
        if (m_xml[at] != '<')
            return std::min(m_xml.find('<', at), m_xml.size());
        if (m_xml.compare(at, 4, "<!--") == 0)
            return behind("-->", at + 4);
        if (m_xml.compare(at, 9, "<![CDATA[") == 0)
            return behind("]]>", at + 9);
        std::size_t const end = behind(">", at + 1);
        // A document type is in one piece, with what it declares.
        return m_xml.compare(at, 9, "<!DOCTYPE") == 0
                && m_xml.find('[', at) < std::min(end, m_xml.find(']', at))
            ? behind("]>", at)
            : end;
    }

    void addTag(Range whole)
    {
        bool const isEnd = m_xml[whole.begin + 1] == '/';
        std::size_t const begin = whole.begin + (isEnd ? 2 : 1);
        std::size_t const end = std::min(m_xml.find_first_of(" \t\r\n/>", begin), whole.end);
        tags.push_back({whole, {begin, end}, isEnd, attributesIn({end, whole.end})});
        std::size_t const tag = tags.size() - 1;
        if (isEnd) {
            closeElement(tag);
        } else if (m_xml[whole.end - 1] == '>' && m_xml[whole.end - 2] == '/') {
            elements.push_back({whole, tag, tag});
        } else {
            m_open.push_back(tag);
        }
    }

    void closeElement(std::size_t endTag)
    {
        if (m_open.empty())
            return;
        std::size_t const tag = m_open.back();
        if (textOf(tags[tag].name) != textOf(tags[endTag].name))
            return;
        m_open.pop_back();
        elements.push_back({{tags[tag].whole.begin, tags[endTag].whole.end}, tag, endTag});
    }

    std::string textOf(Range range) const
    {
        return m_xml.substr(range.begin, range.end - range.begin);
    }

    std::vector<Attribute> attributesIn(Range range) const
    {
        std::vector<Attribute> found;
        std::size_t at = range.begin;
        while (true) {
            std::size_t const name = m_xml.find_first_not_of(blanks, at);
            std::size_t const equals = m_xml.find('=', at);
            if (name == std::string::npos || equals >= range.end || equals < name)
                return found;
            std::size_t const quote = m_xml.find_first_of("\"'", equals);
            if (quote >= range.end)
                return found;
            std::size_t const last = m_xml.find(m_xml[quote], quote + 1);
            if (last >= range.end)
                return found;
            found.push_back({{at, last + 1}, {name, equals}, {quote + 1, last}});
            at = last + 1;
        }
    }

    std::string const& m_xml;
    std::vector<std::size_t> m_open;
};

/** Values that readers of numbers, flags and texts treat in their own way. */
constexpr char const* specialValues[] = {"", "0", "1", "-1", "-0", "0.5", ".5", "5.", " 1 ", "+1",
    "1e5", "1e308", "-1e308", "1e309", "4.9e-324", "1e-400", "nan", "inf", "-inf", "0x10", "TRUE",
    "true", "False", "7", "8", "32767", "32768", "-32769", "65536", "70000", "2147483647",
    "2147483648", "-2147483649", "99999999999999999999", "123456.5", "999999.5", "0.0001",
    "0.00009999995", "1,5", "1 2", "&#65;", "&amp;", "&#x1;", "50%", "10mm", "#ff0000"};

class Mutation
{
public:
    Mutation(std::string xml, unsigned int seed)
        : m_xml(std::move(xml))
        , m_parts(m_xml)
        , m_random(seed)
    {
    }

    /** The changed text; the same one if nothing could be changed. */
    std::string result()
    {
        using Operation = std::string (Mutation::*)();
        static constexpr Operation operations[] = {&Mutation::withElementTwice,
            &Mutation::withoutElement, &Mutation::withElementMoved, &Mutation::withElementCopied,
            &Mutation::withElementWrapped, &Mutation::withElementUnwrapped,
            &Mutation::withElementRenamed, &Mutation::withoutAttribute,
            &Mutation::withAttributeMoved, &Mutation::withAttributeRenamed,
            &Mutation::withSpecialValue, &Mutation::withSpecialValue, &Mutation::withValueCopied,
            &Mutation::withValueMutated, &Mutation::withValueMutated, &Mutation::withTextMutated,
            &Mutation::withTextAsData, &Mutation::withInsertion};
        for (int attempt = 0; attempt < 4; ++attempt) {
            std::string const changed = (this->*operations[below(std::size(operations))])();
            if (changed != m_xml)
                return changed;
        }
        return m_xml;
    }

    /** The text with an element of `other` in it; the same one if there is none. */
    std::string withElementOf(std::string const& other)
    {
        Parts const parts(other);
        if (parts.elements.empty())
            return m_xml;
        Range const source = parts.elements[below(parts.elements.size())].whole;
        return replaced(placeForElement(), other.substr(source.begin, source.end - source.begin));
    }

private:
    std::size_t below(std::size_t end) { return m_random() % end; }

    template <class Part> Part const& any(std::vector<Part> const& parts)
    {
        return parts[below(parts.size())];
    }

    std::string text(Range range) const
    {
        return m_xml.substr(range.begin, range.end - range.begin);
    }

    std::string replaced(Range range, std::string const& by) const
    {
        return m_xml.substr(0, range.begin) + by + m_xml.substr(range.end);
    }

    /** Behind any tag, which is mostly within an element. */
    Range placeForElement()
    {
        if (m_parts.tags.empty())
            return {m_xml.size(), m_xml.size()};
        std::size_t const place = any(m_parts.tags).whole.end;
        return {place, place};
    }

    /** A tag with attributes; null if there is none. */
    Tag const* taggedAttributes()
    {
        std::vector<Tag const*> found;
        for (Tag const& tag : m_parts.tags) {
            if (!tag.attributes.empty())
                found.push_back(&tag);
        }
        return found.empty() ? nullptr : any(found);
    }

    /** An attribute of any tag; null if there is none. */
    Attribute const* anyAttribute()
    {
        Tag const* const tag = taggedAttributes();
        return tag ? &any(tag->attributes) : nullptr;
    }

    /** The bytes as libFuzzer changes them, with words of the dictionary among others. */
    static std::string mutatedBytes(std::string bytes)
    {
        std::size_t const size = bytes.size();
        bytes.resize(size + 16);
        bytes.resize(
            LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(&bytes[0]), size, bytes.size()));
        return bytes;
    }

    std::string withElementTwice()
    {
        if (m_parts.elements.empty())
            return m_xml;
        Range const source = any(m_parts.elements).whole;
        return replaced({source.end, source.end}, text(source));
    }

    std::string withoutElement()
    {
        return m_parts.elements.empty() ? m_xml : replaced(any(m_parts.elements).whole, {});
    }

    std::string withElementMoved()
    {
        if (m_parts.elements.empty())
            return m_xml;
        Range const source = any(m_parts.elements).whole;
        Range const place = placeForElement();
        if (place.begin >= source.end)
            return text({0, source.begin}) + text({source.end, place.begin}) + text(source)
                + m_xml.substr(place.begin);
        if (place.begin <= source.begin)
            return text({0, place.begin}) + text(source) + text({place.begin, source.begin})
                + m_xml.substr(source.end);
        return m_xml;
    }

    std::string withElementCopied()
    {
        if (m_parts.elements.empty())
            return m_xml;
        return replaced(placeForElement(), text(any(m_parts.elements).whole));
    }

    std::string withElementWrapped()
    {
        if (m_parts.elements.empty())
            return m_xml;
        Range const inner = any(m_parts.elements).whole;
        Element const& outer = any(m_parts.elements);
        if (outer.tag == outer.endTag)
            return m_xml;
        return replaced(inner,
            text(m_parts.tags[outer.tag].whole) + text(inner)
                + text(m_parts.tags[outer.endTag].whole));
    }

    std::string withElementUnwrapped()
    {
        if (m_parts.elements.empty())
            return m_xml;
        Element const& element = any(m_parts.elements);
        if (element.tag == element.endTag)
            return m_xml;
        return replaced(element.whole,
            text({m_parts.tags[element.tag].whole.end, m_parts.tags[element.endTag].whole.begin}));
    }

    std::string withElementRenamed()
    {
        if (m_parts.elements.empty())
            return m_xml;
        Element const& element = any(m_parts.elements);
        std::string const name = text(any(m_parts.tags).name);
        std::string const renamed = element.tag == element.endTag
            ? m_xml
            : replaced(m_parts.tags[element.endTag].name, name);
        // The start tag stands before the end tag, whose change has moved nothing of it.
        Range const first = m_parts.tags[element.tag].name;
        return renamed.substr(0, first.begin) + name + renamed.substr(first.end);
    }

    std::string withoutAttribute()
    {
        Attribute const* const attribute = anyAttribute();
        return attribute ? replaced(attribute->whole, {}) : m_xml;
    }

    std::string withAttributeMoved()
    {
        Attribute const* const attribute = anyAttribute();
        if (!attribute)
            return m_xml;
        Tag const& tag = any(m_parts.tags);
        return tag.isEnd ? m_xml : replaced({tag.name.end, tag.name.end}, text(attribute->whole));
    }

    std::string withAttributeRenamed()
    {
        Attribute const* const attribute = anyAttribute();
        return attribute ? replaced(attribute->name, text(anyAttribute()->name)) : m_xml;
    }

    std::string withSpecialValue()
    {
        Attribute const* const attribute = anyAttribute();
        return attribute
            ? replaced(attribute->value, specialValues[below(std::size(specialValues))])
            : m_xml;
    }

    std::string withValueCopied()
    {
        Attribute const* const attribute = anyAttribute();
        return attribute ? replaced(attribute->value, text(anyAttribute()->value)) : m_xml;
    }

    std::string withValueMutated()
    {
        Attribute const* const attribute = anyAttribute();
        return attribute ? replaced(attribute->value, mutatedBytes(text(attribute->value))) : m_xml;
    }

    std::string withTextMutated()
    {
        if (m_parts.texts.empty())
            return m_xml;
        Range const range = any(m_parts.texts);
        return replaced(range, mutatedBytes(text(range)));
    }

    std::string withTextAsData()
    {
        if (m_parts.texts.empty())
            return m_xml;
        Range const range = any(m_parts.texts);
        return replaced(range, "<![CDATA[" + text(range) + "]]>");
    }

    std::string withInsertion()
    {
        static constexpr char const* insertions[] = {"<!-- -->", "<![CDATA[]]>", "<?a b?>", "\n",
            "&amp;", "&#65;", "&unknown;", "text", "<e/>", "<e>", "</e>", "\xef\xbb\xbf"};
        return replaced(placeForElement(), insertions[below(std::size(insertions))]);
    }

    std::string const m_xml;
    Parts const m_parts;
    std::minstd_rand m_random;
};

std::string textOf(std::uint8_t const* data, std::size_t size)
{
    return {reinterpret_cast<char const*>(data), size};
}

} // namespace

std::size_t XmlMutator::mutate(
    std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
    std::string const original = textOf(data, size);
    // Bytes, too, must be changed: the guards against what is no XML are worth as much.
    std::string const changed = seed % 4 == 0 ? original : Mutation(original, seed).result();
    if (changed == original || changed.size() > maxSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::memcpy(data, changed.data(), changed.size());
    return changed.size();
}

std::size_t XmlMutator::cross(std::uint8_t const* first, std::size_t firstSize,
    std::uint8_t const* second, std::size_t secondSize, std::uint8_t* out, std::size_t maxSize,
    unsigned int seed)
{
    std::string const original = textOf(first, firstSize);
    std::string const changed = Mutation(original, seed).withElementOf(textOf(second, secondSize));
    if (changed == original || changed.size() > maxSize)
        return 0;
    std::memcpy(out, changed.data(), changed.size());
    return changed.size();
}

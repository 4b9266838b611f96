// SPDX-License-Identifier: MIT
#include "kinds.h"

Parts body(QByteArray const& text)
{
    return {QByteArray(), text};
}

QByteArray filled(int size, QByteArray const& pattern)
{
    QByteArray result;
    result.reserve(size + pattern.size() + 16);
    for (int i = 0; result.size() < size; ++i)
        result += QByteArray(pattern).replace("%1", QByteArray::number(i));
    return result;
}

namespace {

/** `count` times `pattern`, as in filled(). */
QByteArray numbered(int count, QByteArray const& pattern)
{
    QByteArray result;
    for (int i = 0; i < count; ++i)
        result += QByteArray(pattern).replace("%1", QByteArray::number(i));
    return result;
}

QByteArray repeated(int size, QByteArray const& pattern)
{
    return pattern.repeated(1 + size / pattern.size());
}

} // namespace

std::vector<Kind> const& markupKinds()
{
    static std::vector<Kind> const kinds {
        {"long name", [](int size) { return body('<' + QByteArray(size, 'n') + "/>"); }},
        {"longest names",
            [](int size) { return body(repeated(size, '<' + QByteArray(4000, 'n') + "/>")); }},
        {"long value", [](int size) { return body("<b c='" + QByteArray(size, 'v') + "'/>"); }},
        {"value of spaces",
            [](int size) { return body("<b c='" + QByteArray(size, '\n') + "'/>"); }},
        {"attributes of one",
            [](int size) { return body("<b" + filled(4 * size, " c%1=''") + "/>"); }},
        {"many attributes",
            [](int size) { return body(repeated(size, "<b" + numbered(250, " c%1=''") + "/>")); }},
        {"elements", [](int size) { return body(repeated(size, "<b/>")); }},
        {"names of elements", [](int size) { return body(filled(size, "<b%1 c%1='%1'/>")); }},
        // As long as the attributes and texts of a document that somebody keeps.
        {"texts of elements",
            [](int size) {
                return body(filled(size,
                    "<File Path='/home/user/documents/drawings of the house/plan %1.xml'>"
                    "A text of as many words as a title has</File>\n"));
            }},
        {"depth",
            [](int size) {
                constexpr int depth = 900;
                return body(repeated(
                    size, QByteArray("<b>").repeated(depth) + QByteArray("</b>").repeated(depth)));
            }},
        {"too deep", [](int size) { return body(repeated(size, "<b>")); }},
        {"text", [](int size) { return body(repeated(size, "text \xc3\xa4 ")); }},
        {"lines", [](int size) { return body(repeated(size, "\r\n")); }},
        {"texts", [](int size) { return body(repeated(size, "t<b/>")); }},
        {"character data",
            [](int size) { return body("<![CDATA[" + repeated(size, "]]<") + "]]>"); }},
        {"pieces of character data",
            [](int size) { return body(repeated(size, "<![CDATA[<]]>")); }},
        {"comment", [](int size) { return body("<!--" + repeated(size, "- ") + "-->"); }},
        {"comments", [](int size) { return body(repeated(size, "<!---->")); }},
        {"instruction", [](int size) { return body("<?p " + repeated(size, "?d") + "?>"); }},
        {"instructions", [](int size) { return body(repeated(size, "<?p d?>")); }},
        {"references to characters", [](int size) { return body(repeated(size, "&#65;&#x42;")); }},
        {"long reference", [](int size) { return body("&#" + QByteArray(size, '0') + "65;"); }},
        {"known references", [](int size) { return body(repeated(size, "&amp;&lt;")); }},
        {"references in a value",
            [](int size) { return body("<b c='" + repeated(size, "&amp;&#65;") + "'/>"); }},
        {"references",
            [](int size) {
                return Parts {"<!ENTITY e 'value'>", repeated(size, "<b>&e;</b>")};
            }},
        {"references to much",
            [](int size) {
                return Parts {"<!ENTITY e '" + QByteArray(400, 'v') + "'>", repeated(size, "&e; ")};
            }},
        {"references to elements",
            [](int size) {
                QByteArray const elements = QByteArray("<b/>").repeated(20);
                return Parts {"<!ENTITY e '" + elements + "'>", repeated(size, "&e; ")};
            }},
        {"references to attributes",
            [](int size) {
                return Parts {"<!ENTITY e \"<b" + numbered(30, " c%1=''") + "/>\">",
                    repeated(size, "&e;     ")};
            }},
        {"entities",
            [](int size) {
                return Parts {filled(size, "<!ENTITY e%1 'v'>"), {}};
            }},
        {"long entity",
            [](int size) {
                return Parts {"<!ENTITY e '" + repeated(size, "v ") + "'>", {}};
            }},
        {"chain of entities",
            [](int size) {
                return Parts {filled(size, "<!ENTITY e%1 '&f%1;'>"), {}};
            }},
        {"entities that double",
            [](int size) {
                QByteArray subset;
                for (int i = 0; i < qMin(size / 800, 60); ++i) {
                    QByteArray const inner = "&e" + QByteArray::number(i) + ';';
                    subset +=
                        "<!ENTITY e" + QByteArray::number(i + 1) + " '" + inner + inner + "'>";
                }
                return Parts {
                    "<!ENTITY e0 ''>" + subset, "&e" + QByteArray::number(size / 800) + ';'};
            }},
        {"parameter entities",
            [](int size) {
                return Parts {"<!ENTITY % p '<!ELEMENT b ANY>'>" + repeated(size, "%p; "), {}};
            }},
        {"declared attributes",
            [](int size) {
                return Parts {"<!ATTLIST b" + filled(8 * size, " c%1 CDATA 'v'") + ">", {}};
            }},
        {"lists of attributes",
            [](int size) {
                return Parts {filled(12 * size, "<!ATTLIST b c%1 CDATA 'v'>"), {}};
            }},
        {"default attributes",
            [](int size) {
                return Parts {"<!ATTLIST b" + numbered(100, " c%1 CDATA 'v'") + ">",
                    repeated(size / 2, "<b/>")};
            }},
        {"default attributes of others",
            [](int size) {
                return Parts {
                    "<!ATTLIST b" + numbered(100, " c%1 CDATA 'v'") + ">", repeated(size, "<d/>")};
            }},
        {"long default",
            [](int size) {
                return Parts {"<!ATTLIST b c CDATA '" + QByteArray(size, 'v') + "'>",
                    QByteArray("<b/>").repeated(9)};
            }},
        {"elements with a long default",
            [](int size) {
                return Parts {
                    "<!ATTLIST b c CDATA '" + QByteArray(200, 'v') + "'>", repeated(size, "<b/>")};
            }},
        {"enumeration",
            [](int size) {
                return Parts {"<!ATTLIST b c (" + filled(size, "v%1|") + "w) 'w'>", "<b/>"};
            }},
        {"notations",
            [](int size) {
                return Parts {filled(size, "<!NOTATION n%1 SYSTEM 'v'>"), {}};
            }},
        {"declared elements",
            [](int size) {
                return Parts {filled(size, "<!ELEMENT n%1 (a,b?)*>"), {}};
            }},
        {"model of content",
            [](int size) {
                return Parts {"<!ELEMENT b (" + repeated(size, "c,") + "d)>", {}};
            }},
        {"comments of the type",
            [](int size) {
                return Parts {repeated(size, "<!-- c -->"), {}};
            }},
        {"spaces of the type",
            [](int size) {
                return Parts {repeated(size, " \n"), {}};
            }},
        {"namespaces",
            [](int size) { return body("<b" + filled(8 * size, " xmlns:n%1='u'") + "/>"); }},
        {"namespaces in use",
            [](int size) {
                return body("<b" + numbered(100, " xmlns:n%1='u'") + ">"
                    + repeated(size / 2, "<n0:c/>") + "</b>");
            }},
        {"namespaces in one another",
            [](int size) { return body(repeated(size, "<b xmlns:n='u'><n:c/></b>")); }},
        {"UTF-16",
            [](int size) {
                return Parts {"utf-16", repeated(size / 2, "<b c='d'>text</b>")};
            }},
        {"Latin-1",
            [](int size) {
                return Parts {"latin-1", repeated(size, "<b c='d'>text</b>")};
            }},
    };
    return kinds;
}

std::vector<Kind> const& outlineKinds()
{
    static std::vector<Kind> const kinds {
        {"outlines",
            [](int size) {
                return body(filled(size,
                    "<Shape Name='n%1'><Geometry><MoveTo><X V='%1'/><Y V='2'/></MoveTo>"
                    "<LineTo><X V='5' B='3' P='%1'/><Y V='6'/></LineTo></Geometry></Shape>"));
            }},
        {"segments",
            [](int size) {
                return body("<Geometry>"
                    + filled(size, "<LineTo><X V='%1.25' B='3' P='7'/><Y V='8'/></LineTo>")
                    + "</Geometry>");
            }},
        {"coordinates",
            [](int size) {
                return body("<Geometry><MoveTo>" + filled(size, "<X V='%1'/><Y V='2'/>")
                    + "</MoveTo></Geometry>");
            }},
        {"outlines in one another",
            [](int size) {
                constexpr int depth = 400;
                return body(repeated(size,
                    QByteArray("<Geometry>").repeated(depth)
                        + QByteArray("</Geometry>").repeated(depth)));
            }},
        {"digits",
            [](int size) {
                return body("<Geometry><MoveTo><X V='" + QByteArray(size, '7')
                    + "'/><Y V='0.1'/></MoveTo></Geometry>");
            }},
        {"unknown within outlines",
            [](int size) {
                return body("<Geometry>" + repeated(size, "<b c='d'/>") + "</Geometry>");
            }},
        {"attributes of segments",
            [](int size) {
                return body("<Geometry>"
                    + repeated(size, "<LineTo><X" + numbered(100, " c%1=''") + "/></LineTo>")
                    + "</Geometry>");
            }},
        {"long name",
            [](int size) {
                return body("<Shape Name='" + repeated(size, "n ") + "'><Geometry/></Shape>");
            }},
        {"same names",
            [](int size) { return body(repeated(size, "<Shape Name='n'><Geometry/></Shape>")); }},
        {"appearances",
            [](int size) {
                return body(repeated(size,
                    "<Shape><Geometry/><Appearance><Fill Color='#ff0000'/></Appearance></Shape>"));
            }},
    };
    return kinds;
}

std::vector<Kind> const& pathKinds()
{
    static std::vector<Kind> const kinds {
        {"lines", [](int size) { return body("M0 0L" + filled(size, " %1 5")); }},
        {"moves", [](int size) { return body(filled(size, "M%1 0")); }},
        {"closed", [](int size) { return body(filled(size, "M%1 0h1v1z")); }},
        {"curves", [](int size) { return body("M0 0C" + filled(size, " %1 5 6 7 8 9")); }},
        {"fine curves",
            [](int size) {
                return body(repeated(size, "M1.25 12.125c1.625-2.0625 3.5-4.75 5.0625-6.375"));
            }},
        {"arcs", [](int size) { return body("M0 0" + filled(size, "A5 6 30 0 1 %1 9")); }},
        {"digits", [](int size) { return body("M0 0L0." + QByteArray(size, '3') + " 1"); }},
        {"exponent", [](int size) { return body("M0 0L1e-" + QByteArray(size, '0') + "3 1"); }},
        {"spaces", [](int size) { return body("M0 0L" + QByteArray(size, ' ') + "3 1"); }},
        {"lines of text", [](int size) { return body("M0 0L" + repeated(size, "\n3 1")); }},
    };
    return kinds;
}

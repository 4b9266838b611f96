// SPDX-License-Identifier: MIT
#include "kinds.h"

namespace {

} // namespace

std::vector<Kind> const& pictureKinds()
{
    static std::vector<Kind> const kinds {
        {"rules",
            [](int size) {
                return body("<style>" + filled(size, ".c%1{fill:#f00}") + "</style>"
                    + QByteArray("<path class='c1' d='M0 0h9'/>").repeated(20));
            }},
        {"elements with rules",
            [](int size) {
                QByteArray const rules = ".c1{fill:red} g path{fill:blue} #i{fill:red}";
                return body("<style>" + rules + "</style>"
                    + filled(size, "<path class='c1' d='M0 0h%1'/>"));
            }},
        {"rules for each id",
            [](int size) {
                return body("<style>" + filled(size / 2, "#i%1{fill:#f00}") + "</style>"
                    + filled(size / 2, "<path id='i%1' d='M0 0h1'/>"));
            }},
        {"too many rules and elements",
            [](int size) {
                return body("<style>" + QByteArray(".c{} ").repeated(size * 5) + "</style>"
                    + QByteArray("<a/>").repeated(size * 5));
            }},
        {"style sheets",
            [](int size) {
                return body(filled(size, "<style>a{fill:red}</style>") + "<path d='M0 0h9'/>");
            }},
        {"classes",
            [](int size) {
                return body("<style>.c1{fill:red}</style><path class='" + filled(size, "c%1 ")
                    + "' d='M0 0h9'/>");
            }},
        // As many numbers and characters of path data as icons have on average.
        {"icons",
            [](int size) {
                return body(filled(size,
                    "<path id='i%1' d='M%1.25 12.125"
                        + QByteArray("c1.625-2.0625 3.5-4.75 5.0625-6.375").repeated(9)
                        + "z' style='fill:#4472c4;stroke:none'/>"));
            }},
        {"paths", [](int size) { return body(filled(size, "<path d='M%1 0h1v1z'/>")); }},
        {"path", [](int size) { return body("<path d='M0 0" + filled(size, "L%1 5") + "'/>"); }},
        {"subpaths",
            [](int size) { return body("<path d='" + filled(size, "M%1 0h1v1z") + "'/>"); }},
        {"arcs",
            [](int size) {
                return body("<path d='M0 0" + filled(size, "A5 6 30 0 1 %1 9") + "'/>");
            }},
        {"digits",
            [](int size) { return body("<path d='M0 0L0." + QByteArray(size, '3') + " 1'/>"); }},
        {"points",
            [](int size) { return body("<polyline points='" + filled(size, "%1,5 ") + "'/>"); }},
        {"dashes",
            [](int size) {
                return body("<path stroke='red' stroke-dasharray='" + filled(size, "%1,5 ")
                    + "' d='M0 0h9'/>");
            }},
        {"transforms",
            [](int size) {
                return body("<path transform='" + filled(size, "scale(1) ") + "' d='M0 0h9'/>");
            }},
        {"style attribute",
            [](int size) {
                return body("<path style='" + filled(size, "fill:#f00;") + "' d='M0 0h9'/>");
            }},
        {"groups",
            [](int size) {
                return body(filled(size, "<g fill='red'><g><path d='M0 0h%1'/></g></g>"));
            }},
        {"ids", [](int size) { return body(filled(size, "<path id='i%1' d='M0 0h9v9z'/>")); }},
        {"same id", [](int size) { return body(filled(size, "<path id='i' d='M0 0h9v9z'/>")); }},
        {"uses",
            [](int size) {
                return body(
                    "<path id='i' d='M0 0h9v9z'/>" + filled(size, "<use href='#i' x='%1'/>"));
            }},
        {"uses of uses",
            [](int size) {
                QByteArray text = "<path id='u0' d='M0 0h9v9z'/>";
                for (int i = 0; text.size() < size; ++i) {
                    text += "<use id='u" + QByteArray::number(i % 400 + 1) + "' href='#u"
                        + QByteArray::number(i % 400) + "'/>";
                }
                return body(text);
            }},
        {"uses of nothing", [](int size) { return body(filled(size, "<use href='#n%1'/>")); }},
        {"forward uses",
            [](int size) {
                return body(filled(size / 2, "<use href='#i%1'/>")
                    + filled(size / 2, "<path id='i%1' d='M0 0h9v9z'/>"));
            }},
        {"symbols",
            [](int size) {
                return body(filled(size,
                    "<symbol id='s%1' viewBox='0 0 9 9'><path d='M0 0h9'/>"
                    "</symbol>"));
            }},
        {"symbols in use",
            [](int size) {
                return body(filled(size / 2, "<symbol id='s%1'><path d='M0 0h9'/></symbol>")
                    + filled(size / 2, "<use href='#s%1'/>"));
            }},
        {"views",
            [](int size) {
                return body(filled(size, "<svg viewBox='0 0 9 9'><path d='M0 0h%1'/></svg>"));
            }},
        {"gradients",
            [](int size) {
                return body(filled(size,
                    "<linearGradient id='g%1'><stop offset='0'/></linearGradient>"
                    "<path fill='url(#g%1)' d='M0 0h9v9z'/>"));
            }},
        {"stops",
            [](int size) {
                return body("<linearGradient id='g'>"
                    + filled(size, "<stop offset='0.%1' stop-color='red'/>")
                    + "</linearGradient><path fill='url(#g)' d='M0 0h9v9z'/>");
            }},
        {"gradients of gradients",
            [](int size) {
                QByteArray text;
                for (int i = 0; text.size() < size; ++i) {
                    text += "<linearGradient id='g" + QByteArray::number(i + 1) + "' href='#g"
                        + QByteArray::number(i) + "'/>";
                }
                return body(text + "<path fill='url(#g9)' d='M0 0h9v9z'/>");
            }},
        {"texts", [](int size) { return body(filled(size, "<text x='5' y='%1'>a</text>")); }},
        {"long text",
            [](int size) { return body("<text>" + QByteArray(size / 40, 'a') + "</text>"); }},
        {"spans",
            [](int size) { return body("<text>" + filled(size, "<tspan>a</tspan>") + "</text>"); }},
        {"switches",
            [](int size) { return body(filled(size, "<switch><path d='M0 0h9'/><g/></switch>")); }},
        {"animations",
            [](int size) {
                return body("<path d='M0 0h9'>"
                    + filled(size,
                        "<animateColor attributeName='fill' from='red' to='blue'"
                        " dur='%1s'/>")
                    + "</path>");
            }},
        {"overlapping holes",
            [](int size) {
                return body(
                    "<path fill-rule='evenodd' d='" + filled(size, "M%1 0h500v500h-500z") + "'/>");
            }},
        // Beyond the two million crossings up to which each of them is looked at.
        {"crossing lines",
            [](int size) {
                return body("<path fill-rule='evenodd' d='M0 0" + filled(30 * size, "L100 %1L0 7.5")
                    + "'/>");
            }},
    };
    return kinds;
}

std::vector<Kind> const& drawingKinds()
{
    static std::vector<Kind> const kinds {
        {"steps",
            [](int size) {
                return body("<pathLst><path w='9' h='9'><moveTo><pt x='0' y='0'/></moveTo>"
                    + filled(size, "<lnTo><pt x='%1' y='5'/></lnTo>") + "</path></pathLst>");
            }},
        {"paths",
            [](int size) {
                return body("<pathLst>"
                    + filled(size,
                        "<path w='9' h='9'><moveTo><pt x='0' y='0'/></moveTo>"
                        "<lnTo><pt x='%1' y='5'/></lnTo></path>")
                    + "</pathLst>");
            }},
        {"guides",
            [](int size) {
                return body("<gdLst>" + filled(size, "<gd name='g%1' fmla='*/ w %1 9'/>")
                    + "</gdLst><pathLst><path><moveTo><pt x='g1' y='0'/></moveTo>"
                      "<lnTo><pt x='g2' y='5'/></lnTo></path></pathLst>");
            }},
        {"chain of guides",
            [](int size) {
                QByteArray guides = "<gd name='g0' fmla='val 1'/>";
                QByteArray last = "g0";
                for (int i = 1; guides.size() < size; ++i) {
                    QByteArray const name = 'g' + QByteArray::number(i);
                    guides += "<gd name='" + name + "' fmla='+- " + last + " 1 0'/>";
                    last = name;
                }
                return body("<gdLst>" + guides + "</gdLst><pathLst><path><moveTo><pt x='" + last
                    + "' y='0'/></moveTo><lnTo><pt x='5' y='5'/></lnTo></path></pathLst>");
            }},
        {"arcs",
            [](int size) {
                return body("<pathLst><path w='9' h='9'><moveTo><pt x='0' y='0'/></moveTo>"
                    + filled(size, "<arcTo wR='9' hR='5' stAng='%1' swAng='5400000'/>")
                    + "</path></pathLst>");
            }},
        {"long formula",
            [](int size) {
                return body("<gdLst><gd name='g' fmla='val " + QByteArray(size, '1')
                    + "'/></gdLst><pathLst><path><moveTo><pt x='g' "
                      "y='0'/></moveTo></path></pathLst>");
            }},
    };
    return kinds;
}

std::vector<Kind> const& presetKinds()
{
    static std::vector<Kind> const kinds {
        // As those of a list of presets: a few guides and steps each.
        {"shapes",
            [](int size) {
                return body("</shape>"
                    + filled(size,
                        "<shape%1><avLst><gd name='adj' fmla='val 25000'/></avLst><gdLst>"
                        "<gd name='a' fmla='pin 0 adj 50000'/><gd name='x1' fmla='*/ ss a 100000'/>"
                        "<gd name='x2' fmla='+- r 0 x1'/></gdLst><pathLst><path>"
                        "<moveTo><pt x='l' y='b'/></moveTo><lnTo><pt x='x1' y='t'/></lnTo>"
                        "<lnTo><pt x='x2' y='t'/></lnTo><lnTo><pt x='r' y='b'/></lnTo><close/>"
                        "</path></pathLst></shape%1>")
                    + "<shape>");
            }},
    };
    return kinds;
}

std::vector<Kind> const& odfKinds()
{
    static std::vector<Kind> const kinds {
        {"shapes",
            [](int size) {
                return body(filled(size,
                    "<draw:rect svg:x='%1cm' svg:y='1cm' svg:width='1cm'"
                    " svg:height='2cm'/>"));
            }},
        {"points",
            [](int size) {
                return body("<draw:polyline svg:viewBox='0 0 9 9' svg:width='1cm' svg:height='1cm'"
                            " draw:points='"
                    + filled(size, "%1,5 ") + "'/>");
            }},
        {"path",
            [](int size) {
                return body("<draw:path svg:viewBox='0 0 9 9' svg:width='1cm' svg:height='1cm'"
                            " svg:d='M0 0"
                    + filled(size, "L%1 5") + "'/>");
            }},
        {"transforms",
            [](int size) {
                return body("<draw:rect svg:width='1cm' svg:height='1cm' draw:transform='"
                    + filled(size, "translate(1cm 1cm) ") + "'/>");
            }},
        {"groups",
            [](int size) {
                return body(filled(size,
                    "<draw:g><draw:rect svg:width='1cm' svg:height='%1cm'/>"
                    "</draw:g>"));
            }},
        {"group",
            [](int size) {
                return body("<draw:g>"
                    + filled(size, "<draw:rect svg:width='1cm' svg:height='%1cm'/>") + "</draw:g>");
            }},
        {"chain of styles",
            [](int size) {
                QByteArray text;
                for (int i = 0; text.size() < size; ++i) {
                    text += "<style:style style:name='s" + QByteArray::number(i + 1)
                        + "' style:parent-style-name='s" + QByteArray::number(i) + "'/>"
                        + "<draw:rect svg:width='1cm' svg:height='1cm' draw:style-name='s"
                        + QByteArray::number(i + 1) + "'/>";
                }
                return body(text);
            }},
        {"text in shapes",
            [](int size) {
                return body("<draw:rect svg:width='1cm' svg:height='1cm'>"
                    + filled(size, "<text:p>t</text:p>") + "</draw:rect>");
            }},
    };
    return kinds;
}

# SPDX-License-Identifier: MIT
"""What the two companion libraries give, from the comments of their headers."""
from outline import closed_path, ellipse_elements, is_clockwise
from registry import constant, gives
from units import NAMES
from xmltext import Element, element_of, text_of

ELEMENTS = ["MoveTo", "LineTo", "CurveTo", "Ellipse", "X", "Y", "A", "B", "C", "D"]
QUARKS = {**dict(enumerate(NAMES)), **dict(enumerate(ELEMENTS, 52))}

constant("KpVersion::s_fontFamilyList", [])
constant("KpVersion::s_langID", 0)


@gives("QuarkManager::quarkToString(int)")
def name_of(quark):
    return QUARKS.get(quark, "")


@gives("QuarkManager::quarkFromString(QString const&)")
def number_of(name):
    return next((quark for quark, known in QUARKS.items() if known == name), -1)


@gives("XmlStreamWriter::XmlStreamWriter(QString*)", "XmlStreamWriter::XmlStreamWriter(QByteArray*)",
       "XmlStreamWriter::XmlStreamWriter(QIODevice*)")
def written():
    return {"xml": text_of(Element("X", {"V": "5"}))}


@gives("XmlStreamWriter::writeAttribute(QString const&, QString)",
       "XmlStreamWriter::writeAttribute(QString const&, char const*)",
       "XmlStreamWriter::writeAttribute(QString const&, int)")
def attribute(name, value):
    return {"xml": text_of(Element("X", {name: str(value)})) + "\n"}


@gives("KpFilePathManager::loadXmlFile(QDomDocument&, QString const&)")
def load(content):
    root = element_of(content)
    return {"result": root is not None, "root": root.written() if root else None}


@gives("KpPath::ellipse(QRectF)")
def ellipse(rect):
    return {"elements": ellipse_elements(*rect)}


@gives("KpPath::isClockWise()")
def clockwise(path):
    return bool(path) and is_clockwise(path)


@gives("KpPath::closeSubpath()")
def close(path):
    return {"path": closed_path(path)}


@gives("KpPath::toPainterPath() const")
def to_painter_path(path):
    """The known elements; a curve is whole with what follows it, other control points are not."""
    kept = []
    for i, element in enumerate(path):
        follows = any(other[0] == 2 for other in path[max(0, i - 2):i])
        if element[0] in (0, 1, 2) or element[0] == 3 and follows:
            kept.append(element)
        elif element[0] == 4: # a line to where the subpath began
            kept.append([1] + next(e[1:] for e in reversed(kept) if e[0] == 0))
    return {"painterPath": kept}


@gives("KpPath::fromPainterPath(QPainterPath const&)")
def from_painter_path(painterPath):
    return {"path": painterPath}

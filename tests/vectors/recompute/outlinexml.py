# SPDX-License-Identifier: MIT
"""The Geometry element, from docs/outlines.md: what is written, and what either reader takes."""
import copy

from outline import CLASSES, CURVE, ELLIPSE, LINE, MOVE, at
from reals import six_digits, sixteen_bits, to_int, to_real
from registry import gives
from xmltext import END, OTHER, START, Element, Reader, element_of, text_of

NAMES = {MOVE: "MoveTo", LINE: "LineTo", CURVE: "CurveTo", ELLIPSE: "Ellipse"}
KINDS = {name: kind for kind, name in NAMES.items()}
LETTERS = {MOVE: "XY", LINE: "XY", CURVE: "XYABCD", ELLIPSE: "XYAB"}
FLAGS = {"Closed": "closed", "NoFill": "noFill", "NoLine": "noLine"}


def coordinate(letter, real):
    base, rate, value = real
    attributes = {"V": six_digits(value)}
    if base != 0:
        attributes.update(B=str(base), P=six_digits(rate))
    return Element(letter, attributes)


def segment_element(segment):
    kind = segment[0]
    return Element(NAMES[kind], {}, map(coordinate, LETTERS[kind], segment[1:]))


def outline_element(outline):
    attributes = {"Closed": str(int(outline["closed"]))}
    attributes.update((name, "1") for name, flag in list(FLAGS.items())[1:] if outline[flag])
    return Element("Geometry", attributes, map(segment_element, outline["segments"]))


@gives(*(f"{owner}::saveTo(XmlStreamWriter&)" for owner in CLASSES.values()))
def segment_text(segment):
    return {"xml": text_of(segment_element(segment))}


@gives(*(f"{owner}::saveTo(QDomElement&)" for owner in CLASSES.values()))
def segment_tree(segment):
    return {"geometry": Element("Geometry", {}, [segment_element(segment)]).written()}


@gives("KpPathSegList::saveTo(XmlStreamWriter&)")
def outline_text(outline):
    return {"xml": text_of(outline_element(outline))}


@gives("KpPathSegList::saveTo(QDomElement&)")
def outline_tree(outline):
    return {"parent": Element("Shape", {}, [outline_element(outline)]).written()}


def new_segment(name):
    kind = KINDS[name]
    return [kind] + [real for _ in LETTERS[kind][::2] for real in at(0.0, 0.0)]


def read_real(real, attributes):
    """Writes the fields that are given into the real."""
    for name, field, read in (("V", 2, to_real), ("B", 0, lambda t: sixteen_bits(to_int(t))),
                              ("P", 1, to_real)):
        if name in attributes:
            real[field] = read(attributes[name])


def not_empty(attributes):
    """What counts as given in the tree."""
    return {name: text for name, text in attributes.items() if text}


def read_tree(segment, element):
    letters = LETTERS[segment[0]]
    children = element.children
    if segment[0] in (MOVE, LINE):
        children = [child for child in map(element.first, letters) if child]
    for child in children:
        if child.name in letters:
            read_real(segment[1 + letters.index(child.name)], not_empty(child.attributes))


def read_stream(segment, reader):
    """From the segment's start tag to its end tag."""
    letters = LETTERS[segment[0]]
    while reader.next_start():
        child = reader.current()[1]
        if child.name in letters:
            read_real(segment[1 + letters.index(child.name)], child.attributes)
        reader.skip()


def stopped(reader):
    kind, value = reader.current()
    assert kind != OTHER
    return {"stoppedAt": kind, "stoppedAtName": value.name if kind == START else value}


@gives(*(f"{owner}::parse(QDomElement const&, unsigned int)" for owner in CLASSES.values()))
def parse_segment_tree(segment, xml):
    element = element_of(xml)
    if element is None:
        return {"segment": segment, "result": segment[0] not in (MOVE, LINE)}
    segment = copy.deepcopy(segment)
    read_tree(segment, element)
    return {"segment": segment, "result": True}


@gives(*(f"{owner}::parse(QXmlStreamReader&, unsigned int)" for owner in CLASSES.values()))
def parse_segment_stream(segment, xml):
    segment = copy.deepcopy(segment)
    reader = Reader(xml)
    read_stream(segment, reader)
    assert reader.current()[0] == END
    return {"segment": segment, "result": True, **stopped(reader)}


def is_true(text):
    return text == "1" or text.upper() == "TRUE"


@gives("KpPathSegList::parse(QDomElement const&, unsigned int)")
def parse_tree(outline, xml):
    geometry = element_of(xml)
    outline = copy.deepcopy(outline)
    for name, text in not_empty(geometry.attributes).items():
        if name in FLAGS:
            outline[FLAGS[name]] = is_true(text)
    for child in geometry.children:
        if child.name in KINDS:
            segment = new_segment(child.name)
            read_tree(segment, child)
            outline["segments"].append(segment)
    return {"outline": outline, "result": True}


@gives("KpPathSegList::parse(QXmlStreamReader&, unsigned int)")
def parse_stream(outline, xml):
    reader = Reader(xml)
    attributes = reader.current()[1].attributes
    if not attributes:
        return {"outline": outline, "result": False, **stopped(reader)}
    outline = copy.deepcopy(outline)
    for name, text in attributes.items():
        if name in FLAGS and (text or name != "Closed"):
            outline[FLAGS[name]] = is_true(text)
    while reader.next_start():
        name = reader.current()[1].name
        if name in KINDS:
            segment = new_segment(name)
            read_stream(segment, reader)
            outline["segments"].append(segment)
        else:
            reader.skip()
    return {"outline": outline, "result": True, **stopped(reader)}

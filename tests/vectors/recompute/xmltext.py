# SPDX-License-Identifier: MIT
"""XML as trees, as texts and as the steps of a stream reader."""
from xml.parsers import expat

START, END, OTHER = "StartElement", "EndElement", "other"


class Element:
    """An element; texts and comments are left out."""

    def __init__(self, name, attributes, children=()):
        self.name, self.attributes, self.children = name, dict(attributes), list(children)

    def written(self):
        """As it stands in a vector."""
        return [self.name, self.attributes] + [child.written() for child in self.children]

    def first(self, name):
        return next((child for child in self.children if child.name == name), None)


def steps_of(xml):
    """What a reader meets: (START, element), (END, name), (OTHER, None)."""
    steps = []
    parser = expat.ParserCreate()
    parser.ordered_attributes = False
    parser.StartElementHandler = lambda name, given: steps.append((START, Element(name, given)))
    parser.EndElementHandler = lambda name: steps.append((END, name))
    parser.CharacterDataHandler = lambda text: steps.append((OTHER, None))
    parser.CommentHandler = lambda text: steps.append((OTHER, None))
    parser.Parse(xml, True)
    return steps


def element_of(xml):
    """The root element; None where the text is not well-formed."""
    try:
        steps = steps_of(xml)
    except expat.ExpatError:
        return None
    top = Element("", {})
    path = [top]
    for kind, value in steps:
        if kind == START:
            path[-1].children.append(value)
            path.append(value)
        elif kind == END:
            path.pop()
    return top.children[0]


def parsed_start(xml):
    """The start tag of the root element."""
    return steps_of(xml)[0][1]


class Reader:
    """A stream reader that stands on the root element's start tag."""

    def __init__(self, xml):
        self.steps = steps_of(xml)
        self.place = 0

    def current(self):
        return self.steps[self.place]

    def forward(self):
        self.place += 1
        return self.current()

    def next_start(self):
        """To the next child's start tag, or to the end tag around: whether it is a child's."""
        kind, _ = self.forward()
        while kind == OTHER:
            kind, _ = self.forward()
        return kind == START

    def skip(self):
        """To the end tag of the element whose start tag is here."""
        depth = 1
        while depth:
            kind, _ = self.forward()
            depth += {START: 1, END: -1, OTHER: 0}[kind]


def escaped(text):
    for plain, entity in (("&", "&amp;"), ("<", "&lt;"), (">", "&gt;"), ('"', "&quot;")):
        text = text.replace(plain, entity)
    return text


def text_of(element):
    """Without white space between the tags, as the stream form is written."""
    attributes = "".join(f' {name}="{escaped(text)}"'
                         for name, text in element.attributes.items())
    if not element.children:
        return f"<{element.name}{attributes}/>"
    content = "".join(map(text_of, element.children))
    return f"<{element.name}{attributes}>{content}</{element.name}>"

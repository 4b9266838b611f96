
"use strict";
(() => {
const byId = id => document.getElementById(id);
const data = JSON.parse(byId("data").textContent);
const [firstWidth, firstHeight] = data.box;
const firstSide = Math.max(firstWidth, firstHeight);
// A power of ten, about a hundredth of the box; written so since 10 ** -1 need not be 0.1.
const step = Number(`1e${Math.floor(Math.log10(firstSide / 100))}`);
const largeStep = 10;
// The stage has room for the box at this many times its first size.
const room = 1.7;
// What is no number is left out, and so is what is so far away that browsers take long to draw it.
const isDrawable = number => Math.abs(number) < 1e5 * firstSide;

const size = { width: firstWidth, height: firstHeight };
const view = { left: 0, top: 0, scale: 1, width: 0, height: 0 };
const limit = { width: firstWidth, height: firstHeight };

// ---- The outlines in a box

// The eight rules, as KpReal::updateValue computes them. A number that JSON does not hold is null.
function valueOf([base, rate, value], width, height) {
    const parameter = rate === null ? NaN : rate;
    const side = width < height ? width : height;
    switch (base) {
    case 1: return parameter * width;
    case 2: return parameter * height;
    case 3: return width - parameter;
    case 4: return height - parameter;
    case 5: return side * parameter;
    case 6: return width - side * parameter;
    case 7: return height - side * parameter;
    default: return value === null ? NaN : value;
    }
}

const valuesOf = ([, ...reals]) => reals.map(real => valueOf(real, size.width, size.height));

// The ellipse as KpPath::ellipse draws it: four curves, clockwise from the right-most point.
function ellipseSteps(centreX, centreY, a, b) {
    const x = centreX - a + a;
    const y = centreY - b + b;
    const ka = a * 0.55228474983079340;
    const kb = b * 0.55228474983079340;
    return [
        ["M", x + a, y],
        ["C", x + a, y + kb, x + ka, y + b, x, y + b],
        ["C", x - ka, y + b, x - a, y + kb, x - a, y],
        ["C", x - a, y - kb, x - ka, y - b, x, y - b],
        ["C", x + ka, y - b, x + a, y - kb, x + a, y],
        ["Z"]];
}

// The steps of the drawing, as KpPathSegList::toPath makes them.
function stepsOf(outline) {
    const steps = [];
    let last = null;
    for (const segment of outline.segments) {
        const [x, y, a, b, c, d] = valuesOf(segment);
        let end = [x, y];
        switch (segment[0]) {
        case "M":
            steps.push(["M", x, y]);
            break;
        case "L":
            // A line of less than one unit in both directions is left out, as in
            // KpPathSegLineTo::addToPath: the drawing stays where it is.
            if (last && Math.abs(x - last[0]) < 1 && Math.abs(y - last[1]) < 1)
                continue;
            steps.push(["L", x, y]);
            break;
        case "C":
            steps.push(["C", a, b, c, d, x, y]);
            break;
        case "E":
            if ([x, y, a, b].every(isDrawable))
                steps.push(...ellipseSteps(x, y, a, b));
            end = [x - a + a + a, y - b + b];
            break;
        }
        last = end;
    }
    if (outline.closed)
        steps.push(["Z"]);
    return steps;
}

// The `d` of a path. Steps that cannot be drawn are left out; without a move it starts at 0,0.
function pathText(steps) {
    let text = "";
    let isOpen = false;
    for (const [letter, ...numbers] of steps) {
        if (!numbers.every(isDrawable) || (letter === "Z" && !isOpen))
            continue;
        if (text === "" && letter !== "M")
            text = "M0 0";
        text += letter + numbers.join(" ");
        isOpen = letter === "L" || letter === "C";
    }
    return text;
}

// ---- Elements

function svgElement(name, attributes = {}) {
    const element = document.createElementNS("http://www.w3.org/2000/svg", name);
    setAttributes(element, attributes);
    return element;
}

function setAttributes(element, attributes) {
    for (const [name, value] of Object.entries(attributes))
        element.setAttribute(name, value);
}

function titled(element, text) {
    if (text)
        element.append(Object.assign(svgElement("title"), { textContent: text }));
    return element;
}

// The element of an outline with a function that draws it anew. An ellipse alone is an <ellipse>;
// with anything else it is a part of the path, so that the fill rule sees both.
function outlineView(outline) {
    const drawn = outline.segments.filter(segment => segment[0] !== "M");
    const isEllipse = drawn.length === 1 && drawn[0][0] === "E";
    const element = titled(svgElement(isEllipse ? "ellipse" : "path"), outline.name);
    element.setAttribute("fill-rule", outline.fillRule);
    element.classList.toggle("no-fill", outline.noFill);
    element.classList.toggle("no-line", outline.noLine);
    const updatePath = () => element.setAttribute("d", pathText(stepsOf(outline)));
    const updateEllipse = () => {
        const values = valuesOf(drawn[0]);
        // Without radii it is not drawn.
        const [cx, cy, a, b] = values.every(isDrawable) ? values : [0, 0, 0, 0];
        setAttributes(element, { cx, cy, rx: Math.abs(a), ry: Math.abs(b) });
    };
    return { element, update: isEllipse ? updateEllipse : updatePath };
}

// ---- Points, each with the colours of its rules

const leftHalves = {
    corner: "M0-4.5H-4.5V4.5H0Z",
    curve: "M0-4.5A4.5 4.5 0 0 0 0 4.5Z",
    control: "M0-4.5L-4.5 0L0 4.5Z"
};

const ruleOf = ([base]) => data.rules[base] || data.rules[data.rules.length - 1];

function realText(name, [base, rate, value]) {
    const parameter = base >= 1 && base <= 7 ? `rate ${rate}` : value;
    return `${name}: ${ruleOf([base]).meaning}, ${parameter}`;
}

function markElement(shape, x, y) {
    const mark = svgElement("g");
    mark.append(
        svgElement("path", { d: leftHalves[shape], fill: ruleOf(x).colour }),
        svgElement("path", { d: leftHalves[shape], fill: ruleOf(y).colour, transform: "scale(-1 1)" }));
    return mark;
}

const toView = ([x, y]) => [view.left + view.scale * x, view.top + view.scale * y];

function placed(element, places, place) {
    const isShown = places.flat().every(isDrawable);
    element.setAttribute("visibility", isShown ? "visible" : "hidden");
    if (isShown)
        place(...places.map(toView));
}

// The marks of an outline, each an element with a function that places it; the lines lie lowest.
function markViews(outline) {
    const lines = [];
    const marks = [];
    const line = (from, to) => {
        const element = svgElement("line");
        lines.push({ element, update: () => placed(element, [from(), to()],
            ([x1, y1], [x2, y2]) => setAttributes(element, { x1, y1, x2, y2 })) });
    };
    const mark = (shape, x, y, text, place) => {
        const element = titled(markElement(shape, x, y), text);
        marks.push({ element, update: () => placed(element, [place()],
            ([left, top]) => element.setAttribute("transform", `translate(${left} ${top})`)) });
    };
    const point = (shape, x, y) => mark(shape, x, y, `${realText("x", x)}\n${realText("y", y)}`,
        () => valuesOf(["", x, y]));
    const { segments, closed } = outline;
    segments.forEach((segment, index) => {
        const [kind, x, y, a, b, c, d] = segment;
        // What KpPathSeg::startPt says.
        const before = segments[index - 1] || (closed ? segments[segments.length - 1] : null);
        const position = first => () => valuesOf(segment).slice(first, first + 2);
        if (kind === "C") {
            line(() => before ? valuesOf(before).slice(0, 2) : [0, 0], position(2));
            line(position(0), position(4));
            point("control", a, b);
            point("control", c, d);
            point("curve", x, y);
        } else if (kind === "E") {
            const right = () => { const [cx, cy, rx] = valuesOf(segment); return [cx + rx, cy]; };
            const bottom = () => { const [cx, cy, , ry] = valuesOf(segment); return [cx, cy + ry]; };
            line(position(0), right);
            line(position(0), bottom);
            mark("control", a, a, realText("radius", a), right);
            mark("control", b, b, realText("radius", b), bottom);
            point("curve", x, y);
        } else {
            point("corner", x, y);
        }
    });
    return [...lines, ...marks];
}

function legendEntry(rule) {
    const entry = document.createElement("li");
    const swatch = svgElement("svg", { viewBox: "-5 -5 10 10", "aria-hidden": "true" });
    swatch.append(svgElement("path", { d: "M-4.5-4.5H4.5V4.5H-4.5Z", fill: rule.colour }));
    const meaning = document.createElement("span");
    meaning.textContent = rule.meaning;
    entry.append(swatch, `${rule.name}: `, meaning);
    return entry;
}

// ---- Showing

const outlines = data.outlines.map(outlineView);
byId("outlines").append(...outlines.map(({ element }) => element));
let marks = []; // made when they are first asked for

const handles = [
    { element: byId("width"), axes: ["width"], place: () => [size.width, size.height / 2] },
    { element: byId("height"), axes: ["height"], place: () => [size.width / 2, size.height] },
    { element: byId("corner"), axes: ["width", "height"], place: () => [size.width, size.height] }];

function moveTo(element, [x, y]) {
    element.style.transform = `translate(${x}px, ${y}px)`;
}

function showSize() {
    const text = `${size.width} × ${size.height}`;
    const label = byId("size");
    label.textContent = text;
    const [middle, bottom] = toView([size.width / 2, size.height]);
    const left = Math.max(4, Math.min(middle - label.offsetWidth / 2,
        view.width - label.offsetWidth - 4));
    moveTo(label, [left, bottom + 18]);
    for (const { element, axes, place } of handles) {
        moveTo(element, toView(place()));
        setAttributes(element, { "aria-valuemin": step, "aria-valuemax": limit[axes[0]],
            "aria-valuenow": size[axes[0]],
            "aria-valuetext": axes.length > 1 ? text : String(size[axes[0]]) });
    }
}

function update() {
    byId("plane").setAttribute(
        "transform", `translate(${view.left} ${view.top}) scale(${view.scale})`);
    setAttributes(byId("box"), size);
    for (const outline of outlines)
        outline.update();
    if (byId("points").checked) {
        for (const mark of marks)
            mark.update();
    }
    showSize();
}

function showPoints() {
    const isShown = byId("points").checked;
    if (isShown && marks.length === 0) {
        marks = data.outlines.flatMap(markViews);
        byId("marks").append(...marks.map(({ element }) => element));
        byId("rules").append(...data.rules.map(legendEntry));
    }
    byId("marks").setAttribute("visibility", isShown ? "visible" : "hidden");
    byId("marks").style.display = isShown ? "" : "none";
    byId("legend").hidden = !isShown;
    update();
}

// ---- Changing the size

// So many steps, without digits like the last ones of 3 * 0.1.
const inSteps = count => Number((count * step).toPrecision(12));

// The nearest whole number of steps within the limits.
const snapped = (length, axis) =>
    Math.max(step, Math.min(inSteps(Math.round(length / step)), limit[axis]));

function resize(lengths) {
    for (const [axis, length] of Object.entries(lengths))
        size[axis] = snapped(length, axis);
    update();
}

// Fits the scale to the stage: the plane of the drawing keeps its origin.
function layOut() {
    const { width, height } = byId("stage").getBoundingClientRect();
    const margin = Math.max(28, Math.min(64, Math.min(width, height) / 9));
    const freeWidth = Math.max(1, width - 2 * margin);
    const freeHeight = Math.max(1, height - 2 * margin);
    const scale = Math.min(freeWidth / firstWidth, freeHeight / firstHeight) / room;
    Object.assign(view, { left: margin, top: margin, scale, width, height });
    const furthest = free => Math.max(step, inSteps(Math.floor(free / scale / step)));
    limit.width = furthest(freeWidth);
    limit.height = furthest(freeHeight);
    for (const axis of ["width", "height"]) {
        if (size[axis] > limit[axis])
            size[axis] = snapped(size[axis], axis);
    }
    update();
}

function makeDraggable({ element, axes }) {
    let start = null;
    element.addEventListener("pointerdown", event => {
        if (!event.isPrimary || event.button !== 0)
            return;
        element.setPointerCapture(event.pointerId);
        start = { x: event.clientX, y: event.clientY, ...size };
        element.classList.add("dragged");
    });
    element.addEventListener("pointermove", event => {
        if (!start || !event.isPrimary)
            return;
        const moved = {
            width: start.width + (event.clientX - start.x) / view.scale,
            height: start.height + (event.clientY - start.y) / view.scale
        };
        resize(Object.fromEntries(axes.map(axis => [axis, moved[axis]])));
    });
    element.addEventListener("lostpointercapture", () => {
        start = null;
        element.classList.remove("dragged");
    });
    element.addEventListener("keydown", event => {
        const way = { ArrowLeft: ["width", -1], ArrowRight: ["width", 1],
            ArrowUp: ["height", -1], ArrowDown: ["height", 1] }[event.key];
        if (!way || !axes.includes(way[0]) || event.altKey || event.ctrlKey || event.metaKey)
            return;
        event.preventDefault();
        const [axis, sign] = way;
        resize({ [axis]: size[axis] + sign * step * (event.shiftKey ? largeStep : 1) });
    });
}

handles.forEach(makeDraggable);
byId("points").addEventListener("change", showPoints);
byId("restore").addEventListener("click", () => {
    Object.assign(size, { width: firstWidth, height: firstHeight });
    layOut();
});
byId("points").checked = data.points;
new ResizeObserver(layOut).observe(byId("stage"));
layOut();
showPoints();
})();

// Draws the records of the data block. All names and texts of the data reach the page as text
// nodes and attributes, never as markup.
"use strict";
(() => {
  const data = JSON.parse(document.getElementById("data").textContent);
  const at = (id) => document.getElementById(id);

  const element = (name, properties = {}, ...children) => {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
  };
  const drawn = (name, attributes = {}, ...children) => {
    const made = document.createElementNS("http://www.w3.org/2000/svg", name);
    for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
    made.append(...children);
    return made;
  };

  // ---- texts -------------------------------------------------------------------------------

  // Control characters as their pictures; the NUL that ends some texts is left out.
  const shown = (text) => text.replace(/\u0000+$/, "")
    .replace(/[\u0000-\u0008\u000b-\u001f]/g, (c) => String.fromCharCode(0x2400 + c.charCodeAt(0)))
    .replace(/\u007f/g, "\u2421");

  // A run of lines with tabs is a table. Several tabs in a row are one step to the next column,
  // except in a line that has fewer cells than its table is wide: there they skip what is missing.
  // What stands last in a line makes no column wider.
  const alignedBlock = (lines) => {
    const rows = lines.map((line) => line.split(/\t+/));
    const columns = Math.max(...rows.map((row) => row.length));
    rows.forEach((row, i) => {
      const skip = lines[i].match(/^([^\t]+(?:\t[^\t]+)*)\t\t+/);
      if (!skip || row.length === columns) return;
      row.splice(skip[1].split("\t").length, 0, ...Array(columns - row.length).fill(""));
    });
    const width = (text) => [...text].length;
    const widths = Array(columns).fill(0);
    for (const row of rows) {
      // An empty cell after a label is skipped by it, so the label may reach over it.
      row.slice(0, -1).forEach((cell, i) => {
        if (row[i + 1] !== "") widths[i] = Math.max(widths[i], width(cell));
      });
    }
    return rows.map((row) => {
      let line = "", stop = 0;
      row.forEach((cell, i) => {
        line += " ".repeat(Math.max(0, stop - width(line))) + cell;
        stop += widths[i] + 3;
      });
      return line.trimEnd();
    });
  };

  const aligned = (text) => {
    const lines = text.split("\n");
    const out = [];
    for (let i = 0; i < lines.length;) {
      let end = i;
      while (end < lines.length && lines[end].includes("\t")) ++end;
      if (end > i) out.push(...alignedBlock(lines.slice(i, end)));
      else out.push(lines[end++]);
      i = end;
    }
    return out.join("\n");
  };

  const textSection = (record, {label, content}) => {
    let text = shown(content).replace(/\n+$/, "");
    if (text.startsWith(label + "\n")) text = text.slice(label.length + 1);
    const pre = element("pre", {textContent: aligned(text.replace(/^\n+/, "")), tabIndex: 0});
    pre.setAttribute("aria-label", shown(label));
    const isNamed = record.texts.length > 1 || label !== record.title;
    return element("section", {}, ...(isNamed ? [element("h3", {textContent: shown(label)})] : []), pre);
  };

  // ---- records -----------------------------------------------------------------------------

  const tops = [];
  const open = [];
  data.records.forEach((record, index) => {
    while (open.length && open.at(-1).level >= record.level) open.pop();
    record.index = index;
    record.children = [];
    record.parent = open.at(-1) ?? null;
    (record.parent ? record.parent.children : tops).push(record);
    open.push(record);
  });
  const titleOf = (record) => shown(record.title) || "(untitled)";

  // ---- pictures ----------------------------------------------------------------------------

  // The address of a picture, made when it is first shown and used by all who show it.
  const addressOf = (picture) => {
    if (!picture.address) {
      const bytes = Uint8Array.from(atob(picture.png), (c) => c.charCodeAt(0));
      picture.address = URL.createObjectURL(new Blob([bytes], {type: "image/png"}));
    }
    return picture.address;
  };

  // Makes the grey values readable. A picture that the browser has no room for tells none.
  const readPels = async (picture) => {
    if (picture.pels) return;
    const image = new Image();
    image.src = addressOf(picture);
    await image.decode();
    const canvas = element("canvas", {width: picture.width, height: picture.height});
    const context = canvas.getContext("2d", {willReadFrequently: true});
    context.drawImage(image, 0, 0);
    picture.pels = context;
  };

  const thumbnail = (picture, className) => drawn("svg",
    {viewBox: `0 0 ${picture.width} ${picture.height}`, class: className, "aria-hidden": "true"},
    drawn("image", {width: picture.width, height: picture.height, href: addressOf(picture)}));

  const kThumbSide = 240;  // pels; larger pictures say nothing at the size of a line of text
  const ownPicture = (record) => {
    const view = record.views.find((v) => v.picture != null);
    return view ? data.pictures[view.picture] : null;
  };
  const isSmall = (picture) =>
    picture && picture.width <= kThumbSide && picture.height <= kThumbSide;

  // ---- tree --------------------------------------------------------------------------------

  const kManyChildren = 12;

  const treeItem = (record) => {
    const item = element("li");
    const link = element("a", {href: "#r" + record.index});
    const picture = ownPicture(record);
    if (isSmall(picture)) link.append(thumbnail(picture, "thumb"));
    link.append(element("span", {textContent: titleOf(record)}));
    const row = element("div", {className: "row"});
    if (record.children.length) {
      const toggle = element("button", {type: "button", className: "toggle"});
      toggle.setAttribute("aria-label", "Records below " + titleOf(record));
      toggle.addEventListener("click", () => fold(record, !item.classList.contains("folded")));
      record.toggle = toggle;
      row.append(toggle);
      link.append(element("span", {className: "count", textContent: record.children.length}));
    } else {
      row.append(element("span", {className: "gap"}));
    }
    row.append(link);
    item.append(row);
    if (record.children.length) item.append(treeList(record.children));
    Object.assign(record, {item, link});
    if (record.children.length) fold(record, record.parent && record.children.length > kManyChildren);
    return item;
  };
  const treeList = (records) => element("ul", {}, ...records.map(treeItem));
  const fold = (record, isFolded) => {
    record.item.classList.toggle("folded", Boolean(isFolded));
    record.toggle.setAttribute("aria-expanded", String(!isFolded));
  };

  at("tree").addEventListener("keydown", (event) => {
    const links = [...at("tree").querySelectorAll("a")].filter((a) => a.offsetParent);
    const i = links.indexOf(document.activeElement);
    if (i < 0) return;
    const record = data.records.find((r) => r.link === links[i]);
    if (event.key === "ArrowDown") links[i + 1]?.focus();
    else if (event.key === "ArrowUp") links[i - 1]?.focus();
    else if (event.key === "ArrowRight" && record.toggle) fold(record, false);
    else if (event.key === "ArrowLeft" && record.toggle) fold(record, true);
    else return;
    event.preventDefault();
  });

  // ---- the drawing -------------------------------------------------------------------------

  const kLargestScale = 64;    // points of the screen for a pel
  const kLargestFit = 14;      // the same when all of a small picture is shown
  const kPelsSeenFrom = 6;     // the pel under the pointer is framed from this scale on
  const kDot = 5;              // diameter of a point, in points of the screen
  const kInk = 0.5;            // added to each pen, for thin lines that lie between two pels
  const kHalo = 2;             // by which the dark edge under each stroke is wider
  const colorNames = {"#ff0000": "red", "#00ff00": "green", "#0000ff": "blue",
                      "#ffa500": "orange", "#ffff00": "yellow"};

  const stage = at("stage");
  const world = drawn("g");
  stage.append(world);
  const now = {record: null, view: null, extent: null, scale: 1, x: 0, y: 0, isFitted: true};

  const pathOf = (shape) => shape.strokes.map((points) => {
    let path = "";
    for (let i = 0; i < points.length; i += 2) {
      path += (i ? "L" : "M") + points[i] + " " + points[i + 1];
    }
    return path + (shape.kind === "point" ? "h0" : shape.closed ? "Z" : "");
  }).join("");

  const wordsOf = (shape) => `${colorNames[shape.color] ?? shape.color} ${shape.kind}`;
  const strokeWidth = (shape) => shape.kind === "point" ? kDot : Math.max(1, shape.width) + kInk;

  // Shapes that look alike, which the legend lists and switches together.
  const kindsOf = (layer) => {
    if (layer.kinds) return layer.kinds;
    const kinds = new Map();
    for (const shape of layer.shapes) {
      const words = wordsOf(shape);
      const key = `${words} ${shape.width} ${shape.filled}`;
      if (!kinds.has(key)) kinds.set(key, {words, sample: shape, shapes: [], isOn: true});
      kinds.get(key).shapes.push(shape);
    }
    layer.kinds = [...kinds.values()];
    return layer.kinds;
  };

  const mark = (path, shape, className, extra = 0) => drawn("path", {
    d: path, class: className, stroke: shape.color, "stroke-width": strokeWidth(shape) + extra});

  const drawnKind = (kind) => {
    const group = drawn("g", {"data-kind": kind.words});
    const paths = kind.shapes.map(pathOf);
    group.append(mark(paths.join(""), kind.sample, "mark halo", kHalo));
    kind.shapes.forEach((shape, i) => {
      const path = mark(paths[i], shape, "mark");
      if (shape.filled) path.setAttribute("style", `fill:${shape.color};fill-opacity:0.25`);
      const points = shape.strokes.flat();
      const told = points.length > 8 ? "" : "\n" + points.map((v, k) =>
        (k % 2 ? " " : k ? "\n" : "") + v.toFixed(1)).join("");
      path.append(drawn("title"));
      path.lastChild.textContent = kind.words + told;
      group.append(path);
    });
    kind.group = group;
    showKind(kind, kind.isOn);
    return group;
  };
  const showKind = (kind, isOn) => {
    kind.isOn = isOn;
    kind.group.setAttribute("visibility", isOn ? "visible" : "hidden");
  };

  // The part of the plane that there is to see: the picture, with some room where graphics reach
  // its border or leave it, or the graphics alone.
  const extentOf = (view) => {
    const picture = view.picture != null ? data.pictures[view.picture] : null;
    const span = (shift, start, length) => {
      const values = view.layers.flatMap((l) => l.shapes.flatMap((s) => s.strokes.flatMap(
        (points) => points.filter((_, i) => i % 2 === shift))));
      const low = values.reduce((a, b) => Math.min(a, b), Infinity);
      const high = values.reduce((a, b) => Math.max(a, b), -Infinity);
      if (!picture) return values.length ? {low, high, room: 0.1 * (high - low) + 1} : {low: 0, high: 1, room: 0};
      const far = 0.25 * length;
      return {low: Math.max(start - far, Math.min(start, low)),
              high: Math.min(start + length + far, Math.max(start + length, high)),
              room: low <= start || high >= start + length ? 0.03 * length : 0};
    };
    const x = span(0, view.x, picture?.width), y = span(1, view.y, picture?.height);
    const room = Math.max(x.room, y.room);
    return {x: x.low - room, y: y.low - room, width: x.high - x.low + 2 * room,
            height: y.high - y.low + 2 * room};
  };

  const place = () => {
    const {extent, scale} = now;
    const {clientWidth: w, clientHeight: h} = stage;
    // The middle of the stage stays within the picture, so that it is never lost.
    now.x = Math.min(w / 2 - scale * extent.x, Math.max(w / 2 - scale * (extent.x + extent.width), now.x));
    now.y = Math.min(h / 2 - scale * extent.y, Math.max(h / 2 - scale * (extent.y + extent.height), now.y));
    world.setAttribute("transform", `matrix(${scale} 0 0 ${scale} ${now.x} ${now.y})`);
    world.querySelector("image")?.classList.toggle("large", scale >= 1.5);
    stage.style.touchAction = now.isFitted ? "pan-y" : "none";
    at("zoom").value = (100 * scale).toFixed(scale < 0.1 ? 1 : 0) + " %";
  };
  const center = (scale) => {
    const {extent} = now;
    now.scale = scale;
    now.x = stage.clientWidth / 2 - scale * (extent.x + extent.width / 2);
    now.y = stage.clientHeight / 2 - scale * (extent.y + extent.height / 2);
    place();
  };
  const fitScale = () => Math.min(stage.clientWidth / now.extent.width,
                                  stage.clientHeight / now.extent.height, kLargestFit);
  const fit = () => { now.isFitted = true; center(fitScale()); };

  // Scales so that what lies at (x, y) of the stage stays there.
  const zoomAt = (x, y, factor) => {
    const least = Math.min(1, fitScale());
    const scale = Math.min(kLargestScale, Math.max(least, now.scale * factor));
    now.x = x - (x - now.x) * scale / now.scale;
    now.y = y - (y - now.y) * scale / now.scale;
    now.scale = scale;
    now.isFitted = false;
    place();
  };
  const zoomMiddle = (factor) => zoomAt(stage.clientWidth / 2, stage.clientHeight / 2, factor);

  // Tall enough for the whole picture at the width there is, but never taller than the window.
  const sizeStage = () => {
    const {width, height} = now.extent;
    const wanted = Math.min(stage.clientWidth / width, kLargestFit) * height;
    const most = Math.max(220, Math.min(0.64 * innerHeight, 1.4 * stage.clientWidth));
    stage.style.height = Math.round(Math.min(most, Math.max(160, wanted))) + "px";
  };

  const drawView = () => {
    const {view} = now;
    const picture = view.picture != null ? data.pictures[view.picture] : null;
    world.replaceChildren();
    if (picture) {
      world.append(drawn("image", {x: view.x, y: view.y, width: picture.width,
                                   height: picture.height, href: addressOf(picture)}));
      readPels(picture).then(tellPointer, () => {});
    }
    for (const layer of view.layers) world.append(...kindsOf(layer).map(drawnKind));
    stage.setAttribute("aria-label", "Picture of " + titleOf(now.record));
    at("legend").replaceChildren(...view.layers.map(legendSection));
    at("drawing").classList.toggle("layered", view.layers.length > 0);
  };

  // ---- what lies under the pointer -----------------------------------------------------------

  let pointer = null;  // on the stage

  const tellPointer = () => {
    const {view} = now;
    world.querySelector(".pel")?.remove();
    if (!view) return;
    const picture = view.picture != null ? data.pictures[view.picture] : null;
    if (!pointer) {
      at("pointer").textContent = picture ? `${picture.width} × ${picture.height} pels` : "";
      return;
    }
    const x = (pointer.x - now.x) / now.scale, y = (pointer.y - now.y) / now.scale;
    const facts = [`x ${x.toFixed(1)}`, `y ${y.toFixed(1)}`];
    const column = Math.floor(x - view.x), row = Math.floor(y - view.y);
    const isInside = picture && column >= 0 && row >= 0 && column < picture.width && row < picture.height;
    if (isInside && picture.pels) {
      facts.push(`value ${picture.pels.getImageData(column, row, 1, 1).data[0]}`);
      if (now.scale >= kPelsSeenFrom) {
        world.append(drawn("rect", {class: "pel", x: column + view.x, y: row + view.y, width: 1,
                                    height: 1, "vector-effect": "non-scaling-stroke"}));
      }
    }
    if (view.client) {
      const [a, b, c, d, e, f] = view.client;
      facts.push(`client ${(a * x + b * y + c).toFixed(1)}, ${(d * x + e * y + f).toFixed(1)}`);
    }
    at("pointer").replaceChildren(...facts.map((fact) => element("b", {textContent: fact})));
  };

  const onStage = (event) => {
    const box = stage.getBoundingClientRect();
    return {x: event.clientX - box.left, y: event.clientY - box.top};
  };
  const held = new Map();  // pointers that are down, by their id

  stage.addEventListener("pointerdown", (event) => {
    stage.setPointerCapture(event.pointerId);
    held.set(event.pointerId, onStage(event));
    pointer = onStage(event);
    stage.classList.add("dragged");
    tellPointer();
  });
  stage.addEventListener("pointermove", (event) => {
    const to = onStage(event), from = held.get(event.pointerId);
    pointer = to;
    if (from) {
      const other = [...held].find(([id]) => id !== event.pointerId)?.[1];
      const isPan = event.pointerType === "mouse" || !now.isFitted;
      if (other) {
        const gap = (p) => Math.max(1, Math.hypot(p.x - other.x, p.y - other.y));
        zoomAt(other.x, other.y, gap(to) / gap(from));
      } else if (isPan) {
        now.x += to.x - from.x;
        now.y += to.y - from.y;
        now.isFitted = false;
        place();
      }
      held.set(event.pointerId, to);
    }
    tellPointer();
  });
  for (const name of ["pointerup", "pointercancel"]) {
    stage.addEventListener(name, (event) => {
      held.delete(event.pointerId);
      stage.classList.toggle("dragged", held.size > 0);
    });
  }
  stage.addEventListener("pointerleave", (event) => {
    if (event.pointerType !== "mouse") return;  // a finger is gone, what it told stays
    pointer = null;
    tellPointer();
  });
  stage.addEventListener("wheel", (event) => {
    event.preventDefault();
    const p = onStage(event);
    zoomAt(p.x, p.y, Math.exp(-event.deltaY * (event.ctrlKey ? 0.01 : 0.0015)));
    tellPointer();
  }, {passive: false});
  stage.addEventListener("dblclick", (event) => {
    const p = onStage(event);
    zoomAt(p.x, p.y, 2);
  });
  stage.addEventListener("keydown", (event) => {
    const pan = (x, y) => { now.x += x; now.y += y; now.isFitted = false; place(); };
    const keys = {"+": () => zoomMiddle(1.5), "=": () => zoomMiddle(1.5), "-": () => zoomMiddle(1 / 1.5),
                  "0": fit, "1": one, ArrowLeft: () => pan(40, 0), ArrowRight: () => pan(-40, 0),
                  ArrowUp: () => pan(0, 40), ArrowDown: () => pan(0, -40)};
    if (!keys[event.key] || event.ctrlKey || event.metaKey || event.altKey) return;
    keys[event.key]();
    event.preventDefault();
  });
  const one = () => zoomMiddle(1 / now.scale);
  at("in").addEventListener("click", () => zoomMiddle(1.5));
  at("out").addEventListener("click", () => zoomMiddle(1 / 1.5));
  at("one").addEventListener("click", one);
  at("fit").addEventListener("click", fit);

  // ---- legend ------------------------------------------------------------------------------

  const swatch = (shape) => {
    const paths = {point: "M14 9h0", line: "M4 14L24 4", arc: "M4 14Q14 2 24 14",
                   axes: "M23 14H7V3"};
    const path = paths[shape.kind] ?? "M6 4H22V14H6Z";
    return drawn("svg", {viewBox: "0 0 28 18", "aria-hidden": "true"},
                 mark(path, shape, "mark", 0));
  };

  const checkbox = (isOn, change) => {
    const box = element("input", {type: "checkbox", checked: isOn});
    box.addEventListener("change", () => change(box.checked));
    return box;
  };

  const legendSection = (layer) => {
    const kinds = kindsOf(layer);
    const section = element("section");
    const all = checkbox(true, (isOn) => {
      kinds.forEach((kind, i) => { showKind(kind, isOn); boxes[i].checked = isOn; });
      tellAll();
    });
    const boxes = kinds.map((kind) => checkbox(kind.isOn, (isOn) => { showKind(kind, isOn); tellAll(); }));
    const tellAll = () => {
      const on = kinds.filter((kind) => kind.isOn).length;
      all.checked = on > 0;
      all.indeterminate = on > 0 && on < kinds.length;
    };
    const count = (n) => element("span", {className: "count", textContent: n});
    const name = element("span", {className: "said", textContent: shown(layer.label)});
    if (kinds.length === 1) {  // one row says it
      section.append(element("label", {className: "only", title: kinds[0].words}, boxes[0],
                             swatch(kinds[0].sample), name, count(layer.shapes.length)));
      return section;
    }
    section.append(element("label", {className: "layer"}, all, name, count(layer.shapes.length)));
    kinds.forEach((kind, i) => {
      const said = data.head.meanings[kind.words] ?? kind.words;
      section.append(element("label", {title: kind.words}, boxes[i], swatch(kind.sample),
        element("span", {className: "said", textContent: said}), count(kind.shapes.length)));
    });
    all.disabled = kinds.length === 0;
    if (kinds.length) tellAll();
    else section.append(element("p", {className: "empty", textContent: "nothing drawn"}));
    return section;
  };

  // ---- showing a record --------------------------------------------------------------------

  const showView = (view) => {
    const isSame = now.view && view.picture != null && now.view.picture === view.picture;
    now.view = view;
    now.extent = extentOf(view);
    at("drawing").hidden = false;
    drawView();
    sizeStage();
    if (isSame && !now.isFitted) place();
    else fit();
    tellPointer();
    [...at("views").children].forEach((button, i) =>
      button.setAttribute("aria-pressed", String(now.record.views[i] === view)));
  };

  const viewButtons = (record) => record.views.length < 2 ? [] : record.views.map((view) => {
    const button = element("button", {type: "button", textContent: shown(view.name)});
    button.addEventListener("click", () => showView(view));
    return button;
  });

  const sheetOf = (record) => record.views.length ? [] : record.children
    .filter((child) => ownPicture(child))
    .map((child) => element("a", {href: "#r" + child.index}, thumbnail(ownPicture(child), ""),
                            element("span", {textContent: titleOf(child)})));

  // Brings a link of the tree into sight and leaves the page where it is.
  const scrollTree = (link) => {
    const kRoom = 24;
    const list = at("records"), box = list.getBoundingClientRect(), row = link.getBoundingClientRect();
    const above = box.top + kRoom - row.top;
    const below = row.bottom + kRoom - Math.min(box.bottom, innerHeight);
    if (above > 0) list.scrollTop -= above;
    else if (below > 0) list.scrollTop += below;
  };

  const showRecord = (record) => {
    now.record?.link.removeAttribute("aria-current");
    now.record = record;
    record.link.setAttribute("aria-current", "true");
    const path = [];
    for (let r = record.parent; r; r = r.parent) {
      fold(r, false);
      path.unshift(titleOf(r));
    }
    at("path").textContent = path.join("  ›  ");
    at("record-title").textContent = at("here").textContent = titleOf(record);
    at("views").replaceChildren(...viewButtons(record));
    at("drawing").hidden = true;
    if (record.views.length) showView(record.views[0]);
    at("sheet").replaceChildren(...sheetOf(record));
    at("texts").replaceChildren(...record.texts.map((text) => textSection(record, text)));
    at("records").classList.remove("open");
    at("fold").setAttribute("aria-expanded", "false");
    scrollTo(0, Math.min(scrollY, at("body").offsetTop));
    scrollTree(record.link);
  };

  const showFromAddress = () => {
    const wanted = data.records[Number(location.hash.slice(2))];
    if (location.hash.startsWith("#r") && wanted) showRecord(wanted);
    else if (tops.length) showRecord(tops.at(-1));
  };

  // ---- the page ----------------------------------------------------------------------------

  const dark = matchMedia("(prefers-color-scheme: dark)");
  const setTheme = (isDark) => { document.documentElement.dataset.theme = isDark ? "dark" : "light"; };
  setTheme(dark.matches);
  dark.addEventListener("change", () => setTheme(dark.matches));
  at("theme").addEventListener("click", () =>
    setTheme(document.documentElement.dataset.theme !== "dark"));

  at("fold").addEventListener("click", () =>
    at("fold").setAttribute("aria-expanded", String(at("records").classList.toggle("open"))));

  document.title = shown(data.head.title);
  at("title").textContent = shown(data.head.title);
  if ("passes" in data.head) {
    const verdict = data.head.passes ? "pass" : "fail";
    Object.assign(at("verdict"), {textContent: verdict, className: verdict, hidden: false});
  }
  for (const [name, value] of data.head.facts) {
    at("facts").append(element("div", {}, element("dt", {textContent: name}),
                               element("dd", {textContent: shown(value)})));
  }
  at("tree").append(treeList(tops));
  addEventListener("hashchange", showFromAddress);
  new ResizeObserver(() => {
    if (!now.view || at("drawing").hidden) return;
    sizeStage();
    if (now.isFitted) fit();
    else place();
  }).observe(at("figure"));
  showFromAddress();
})();

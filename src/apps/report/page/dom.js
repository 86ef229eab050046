// Elements made of texts: nothing that a log says becomes markup.

export const byId = (id) => document.getElementById(id);

export function make(tag, properties = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value_] of Object.entries(properties)) {
    if (name === "class") element.className = value_;
    else if (name === "style") Object.assign(element.style, value_);
    else if (name.startsWith("on")) element.addEventListener(name.slice(2), value_);
    else if (value_ !== undefined) element[name] = value_;
  }
  element.append(...children.filter((child) => child !== null && child !== undefined));
  return element;
}

// Rows of cells; a cell is a text, an element, or {text, class, title}.
function makeCell(tag, cell) {
  if (cell instanceof Node) return make(tag, {}, cell);
  if (cell !== null && typeof cell === "object") {
    const content = cell.element ?? cell.text;
    return make(tag, {class: cell.class ?? "", title: cell.title ?? ""}, content);
  }
  return make(tag, {}, cell);
}

export function fillTable(table, headings, rows, rowProperties = () => ({})) {
  const head = make("thead", {}, make("tr", {}, ...headings.map((heading) => makeCell("th", heading))));
  const body = make("tbody", {}, ...rows.map((cells, at) =>
    make("tr", rowProperties(at), ...cells.map((cell) => makeCell("td", cell)))));
  table.replaceChildren(head, body);
}

export const numeric = (text) => ({text, class: "n"});

// At most once a frame.
export function eachFrame(work) {
  let waiting = false;
  return () => {
    if (waiting) return;
    waiting = true;
    requestAnimationFrame(() => {
      waiting = false;
      work();
    });
  };
}

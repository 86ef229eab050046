import {Cells} from "./cells.js";
import {Charts} from "./charts.js";
import {readPage} from "./data.js";
import {byId, eachFrame} from "./dom.js";
import {Figures} from "./figures.js";
import {Head} from "./head.js";
import {Lists} from "./lists.js";
import {RouteMap} from "./map.js";
import {State} from "./state.js";
import {language, setLanguage} from "./texts.js";

async function start() {
  setLanguage(language());
  const page = await readPage();
  const state = new State(page);
  const head = new Head(state);
  const map = new RouteMap(state);
  const charts = new Charts(state);
  const figures = new Figures(state);
  const cells = new Cells(state);
  const lists = new Lists(state, map);
  const fit = () => {
    if (map.map) map.map.invalidateSize({animate: false});
    charts.resize();
    figures.resize();
  };
  window.addEventListener("resize", eachFrame(fit));
  window.addEventListener("beforeprint", () => {
    fit();
    if (map.map) map.map.fitBounds(map.fitted, {padding: [28, 28], maxZoom: 17, animate: false});
  });
  window.addEventListener("afterprint", eachFrame(fit));
  window.qloomReport = {state, head, map, charts, figures, cells, lists};
  document.body.dataset.ready = String(Math.round(performance.now()));
}

start().catch((error) => {
  byId("summary").textContent = String(error);
  throw error;
});

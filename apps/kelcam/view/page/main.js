// main.js
// The page: cameras, messages, keys, and the stream of events that feeds them.
import * as api from "/page/api.js";
import {Messages} from "/page/messages.js";
import {Panel} from "/page/panel.js";

const cameras = document.getElementById("cameras");
const connection = document.getElementById("connection");
const help = document.getElementById("help");
const messages = new Messages();
const panels = [];
let chosen = null;

function choose(panel) {
  chosen = panel;
  cameras.classList.toggle("has-chosen", panel !== null);
  for (const each of panels) {
    each.element.classList.toggle("chosen", each === panel);
    each.part("title").setAttribute("aria-pressed", each === panel);
  }
}

function showCameras(states) {
  for (const state of states) {
    if (panels[state.index]) {
      panels[state.index].show(state);
      continue;
    }
    const panel = new Panel(state, (one) => choose(chosen === one && panels.length > 1 ? null : one));
    panels[state.index] = panel;
    cameras.append(panel.element);
  }
  cameras.classList.toggle("several", panels.length > 1);
  if (panels.length === 1 && !chosen) choose(panels[0]);
}

function setConnected(isConnected) {
  connection.hidden = isConnected;
  connection.textContent = isConnected ? "" : "No connection to kelcam. Is it still running? The page tries again every second.";
  document.body.classList.toggle("disconnected", !isConnected);
}

api.listen({
  open() {
    setConnected(true);
    // The last messages come again.
    messages.clear();
    for (const panel of panels) panel.restart();
  },
  lost() {
    setConnected(false);
    for (const panel of panels) panel.pause();
  },
  cameras: showCameras,
  frame: (event) => panels[event.camera]?.showFrame(event),
  figures: (event) => panels[event.camera]?.showFigures(event),
  message: (event) => messages.add(event),
});

// The camera that a key is for: the chosen one, or the one that has the focus.
function panelOfKeys() {
  const index = document.activeElement?.closest("section.camera")?.dataset.index;
  return panels[index] ?? chosen ?? panels[0];
}

function isForAnElement(event) {
  const {target} = event;
  if (target.matches("input:not([type=checkbox], [type=range]), select, textarea")) return true;
  return event.key === " " && target.matches("button, input");
}

document.getElementById("help-button").addEventListener("click", () => help.showModal());
document.addEventListener("keydown", (event) => {
  if (event.altKey && event.key >= "1" && event.key <= "9") {
    const panel = panels[Number(event.key) - 1];
    if (!panel) return;
    event.preventDefault();
    return choose(panel);
  }
  if (event.ctrlKey || event.metaKey || event.altKey || help.open || isForAnElement(event)) return;
  if (event.key === "?") return help.showModal();
  if (event.key === "/") {
    event.preventDefault();
    return document.getElementById("search").focus();
  }
  if (panelOfKeys()?.press(event.key.toLowerCase())) event.preventDefault();
});

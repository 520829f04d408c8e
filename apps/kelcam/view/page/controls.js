// controls.js
// The camera's settings: sliders with their numbers, and what else of it can be set.
import * as api from "/page/api.js";

const kSliderSteps = 1000;

// As many decimals as the step has.
function rounded(value, step) {
  if (!(step > 0)) return value;
  const decimals = Math.min(6, Math.max(0, Math.ceil(-Math.log10(step) - 1e-9)));
  return Number(value.toFixed(decimals));
}

// Sends the newest value only: one that is on its way is waited for.
class Latest {
  constructor(send) {
    this.send = send;
    this.isUnderWay = false;
    this.next = null;
  }

  async push(value) {
    this.next = {value};
    if (this.isUnderWay) return;
    this.isUnderWay = true;
    while (this.next) {
      const {value: newest} = this.next;
      this.next = null;
      await this.send(newest);
    }
    this.isUnderWay = false;
  }
}

// Until then a slider that was moved stays where it is: its next step may follow.
const kSettledMs = 700;

function isInUse(element) {
  return document.activeElement === element && element.matches(":focus-visible, .dragged");
}

class Control {
  constructor(camera, control) {
    this.element = document.getElementById("control").content.firstElementChild.cloneNode(true);
    this.element.dataset.control = control.name;
    this.range = this.element.querySelector("input[type=range]");
    this.number = this.element.querySelector("input[type=number]");
    this.answer = this.element.querySelector(".answer");
    this.automatic = this.element.querySelector("input[type=checkbox]");
    this.element.querySelector("label").textContent = control.label;
    this.element.querySelector(".unit").textContent = control.unit;
    this.range.setAttribute("aria-label", `${control.label}, slider`);
    this.number.setAttribute("aria-label", control.unit ? `${control.label} in ${control.unit}` : control.label);
    this.number.id = `control-${camera}-${control.name}`;
    this.element.querySelector("label").htmlFor = this.number.id;
    this.latest = new Latest((value) => this.#send(camera, value));
    const send = (value) => this.latest.push(value);
    this.range.addEventListener("input", () => {
      this.moved = performance.now();
      this.number.value = this.#valueOf(Number(this.range.value));
      send(`${this.number.value}${this.control.unit}`);
    });
    this.number.addEventListener("change", () => {
      if (this.number.value === "") return this.show(this.control);
      this.range.value = this.#placeOf(Number(this.number.value));
      send(`${this.number.value}${this.control.unit}`);
    });
    this.automatic.addEventListener("change", () => send(this.automatic.checked ? "auto" : `${this.number.value}${this.control.unit}`));
    for (const [event, isDragged] of [["pointerdown", true], ["pointerup", false], ["blur", false]]) {
      this.range.addEventListener(event, () => this.range.classList.toggle("dragged", isDragged));
    }
    this.show(control);
  }

  show(control) {
    this.control = control;
    const {minimum, maximum, step} = control;
    const isLogarithmic = control.scale === "log" && minimum > 0;
    this.isLogarithmic = isLogarithmic;
    Object.assign(this.range, isLogarithmic ? {min: 0, max: kSliderSteps, step: 1} : {min: minimum, max: maximum, step: step || "any"});
    Object.assign(this.number, {min: minimum, max: maximum, step: "any"});
    const isMoving = this.range.classList.contains("dragged") || performance.now() - this.moved < kSettledMs;
    if (isMoving || this.latest.isUnderWay || isInUse(this.number)) return;
    this.number.value = rounded(control.value, step);
    this.range.value = this.#placeOf(control.value);
    this.range.setAttribute("aria-valuetext", control.value_text);
    this.element.querySelector(".automatic").hidden = control.automatic === null;
    this.automatic.checked = control.automatic === true;
    this.range.disabled = this.number.disabled = control.read_only;
    const digits = (value) => rounded(value, step).toLocaleString("en");
    this.number.title = `${digits(minimum)} to ${digits(maximum)} ${control.unit}`.trim();
  }

  #valueOf(place) {
    const {minimum, maximum, step} = this.control;
    return rounded(this.isLogarithmic ? minimum * (maximum / minimum) ** (place / kSliderSteps) : place, step);
  }

  #placeOf(value) {
    const {minimum, maximum} = this.control;
    if (!this.isLogarithmic) return value;
    return (kSliderSteps * Math.log(Math.max(value, minimum) / minimum)) / Math.log(maximum / minimum);
  }

  async #send(camera, value) {
    try {
      const {value_text: text} = await api.post(camera, "set", {control: this.control.name, value});
      this.answer.textContent = text;
      this.answer.classList.remove("error");
    } catch (error) {
      this.answer.textContent = error.message;
      this.answer.classList.add("error");
    }
  }
}

const kBytesPerMegabyte = 1e6;

export class Controls {
  // part(name): the element of the panel with this mark; onShot(): a single picture has been taken.
  constructor(camera, part, onShot) {
    this.camera = camera;
    this.part = part;
    this.rows = new Map();
    for (const name of ["area", "trigger", "rate"]) {
      const element = part(name);
      element.id = `${name}-${camera}`;
      element.closest(".row").querySelector("label").htmlFor = element.id;
    }
    part("color").addEventListener("change", () => this.#post("color", {color: part("color").checked}));
    part("area").addEventListener("change", () => this.#post("area", {area: part("area").value}));
    // What was refused stays to be mended until the field is left.
    for (const name of ["area", "rate"]) {
      part(name).addEventListener("blur", () => {
        if (!this.isPosting) this.show(this.state);
      });
    }
    part("trigger").addEventListener("change", () => this.#post("trigger", {trigger: part("trigger").value}));
    part("rate").addEventListener("change", () => this.#post("rate", {bytes_per_s: Math.round(Number(part("rate").value) * kBytesPerMegabyte)}));
    part("run").addEventListener("click", () => this.#post("run", {run: this.state.state !== "running"}));
    part("shot").addEventListener("click", async () => {
      await this.#post("shot", {});
      onShot();
    });
  }

  show(camera) {
    const {part} = this;
    this.state = camera;
    const isOpen = camera.state === "running" || camera.state === "stopped";
    this.#showRows(camera.controls);
    part("run").setAttribute("aria-pressed", camera.state === "running");
    part("run").disabled = !isOpen;
    part("shot").disabled = camera.state !== "stopped";
    part("color").checked = camera.color;
    part("color").disabled = !isOpen || !camera.can_color;
    if (!isInUse(part("area"))) part("area").value = camera.area;
    part("area").disabled = !isOpen;
    this.#showTriggers(camera, isOpen);
    const {rate} = camera;
    const megabytes = (bytes) => rounded(bytes / kBytesPerMegabyte, 0.1);
    Object.assign(part("rate"), {min: megabytes(rate.minimum), max: megabytes(rate.maximum), disabled: !isOpen});
    if (!isInUse(part("rate"))) part("rate").value = megabytes(rate.value_bytes_per_s);
    part("controls").inert = !isOpen;
  }

  #showRows(controls) {
    const names = controls.map((control) => control.name);
    for (const [name, row] of this.rows) {
      if (names.includes(name)) continue;
      row.element.remove();
      this.rows.delete(name);
    }
    for (const control of controls) {
      const row = this.rows.get(control.name);
      if (row) {
        row.show(control);
        continue;
      }
      const made = new Control(this.camera, control);
      this.rows.set(control.name, made);
      this.part("controls").append(made.element);
    }
  }

  #showTriggers(camera, isOpen) {
    const list = this.part("trigger");
    list.closest(".row").hidden = camera.triggers.length === 0;
    list.disabled = !isOpen;
    if (list.options.length !== camera.triggers.length) {
      list.replaceChildren(...camera.triggers.map((name) => new Option(name, name)));
    }
    if (!isInUse(list)) list.value = camera.trigger;
  }

  async #post(name, body) {
    const answer = this.part("answer");
    this.isPosting = true;
    try {
      await api.post(this.camera, name, body);
      answer.textContent = name === "area" ? `area ${body.area || "as the driver has it"}` : "";
    } catch (error) {
      answer.textContent = error.message;
      this.show(this.state);
    }
    this.isPosting = false;
  }
}

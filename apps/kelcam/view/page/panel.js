// panel.js
// One camera of the page.
import * as api from "/page/api.js";
import {drawCourse, drawHistogram} from "/page/charts.js";
import {Controls} from "/page/controls.js";
import {PictureView} from "/page/picture_view.js";
import {ShownPicture} from "/page/shown_picture.js";
import {ViewWindow} from "/page/view_window.js";

const kCourseLength = 150;
const kGoesOn = "The program tries again by itself, and the picture goes on when the camera answers.";
const kStates = {running: "running", stopped: "stopped", opening: "opening", lost: "lost"};

const counted = (count, noun) => `${count.toLocaleString("en")} ${noun}${count === 1 ? "" : "s"}`;
// Of a share: what is there is not rounded to nothing.
const percent = (share) => (share > 0 && share < 0.001 ? "< 0.1 %" : `${(share * 100).toFixed(1)} %`);

export class Panel {
  constructor(camera, onChosen) {
    this.index = camera.index;
    this.element = document.getElementById("camera").content.firstElementChild.cloneNode(true);
    this.element.dataset.index = camera.index;
    this.view = new ViewWindow();
    this.shown = new ShownPicture(camera.index, this.view, () => this.#pictureChanged());
    this.picture = new PictureView(this.part("picture"), this.view, this.shown, {
      onLook: () => this.#looked(),
      onPixel: (pixel) => this.#showPixel(pixel),
      onArea: (area) => this.#setArea(area),
    });
    this.controls = new Controls(camera.index, (name) => this.part(name), () => this.shown.ask());
    this.course = [];
    this.peak = 0;
    this.#hear(onChosen);
    this.show(camera);
  }

  part(name) {
    return this.element.querySelector(`[data-part=${name}]`);
  }

  show(camera) {
    const returned = this.camera && this.camera.state === "lost" && camera.state !== "lost";
    this.camera = camera;
    const name = camera.identifier || camera.title;
    this.part("title").textContent = name;
    this.part("title").title = name;
    this.part("picture").setAttribute("aria-label", `Picture of ${name}`);
    this.part("state").textContent = kStates[camera.state] ?? camera.state;
    this.element.dataset.state = camera.state;
    this.shown.isGrey = !camera.color;
    this.shown.feed(camera.state === "running");
    // The last one of a run.
    if (camera.state === "stopped") this.shown.ask();
    this.picture.isDimmed = camera.state === "lost" || camera.state === "opening";
    this.#showProblem(camera);
    this.controls.show(camera);
    if (returned) this.shown.restart();
    this.picture.draw();
  }

  showFrame(event) {
    this.frameEvent = event;
    drawHistogram(this.part("histogram"), event.histogram, event.clipped);
    const [dark, bright] = [0, 1].map((end) => Math.max(...event.clipped.map((shares) => shares[end])));
    const clipping = this.part("clipping");
    const means = event.mean.map((mean) => mean.toFixed(1)).join(" ");
    clipping.textContent = `black ${percent(dark)}, white ${percent(bright)}, mean ${means}`;
    clipping.classList.toggle("clips", dark > 0.01 || bright > 0.01);
    this.#showSharpness(event);
    this.part("figures").textContent = `${event.sent_per_s.toFixed(1)} frames/s, ${event.shown_per_s.toFixed(1)} shown`;
  }

  showFigures(figures) {
    const megabytes = (figures.stream_rate_bytes_per_s / 1e6).toFixed(1);
    const missing = figures.missing_frame_ids === null ? "" : `, ${counted(figures.missing_frame_ids, "frame id")} missing`;
    this.part("counts").textContent = `${counted(figures.frames, "frame")}${missing}, stream rate ${megabytes} MB/s`;
    const failures = Object.entries(figures.failures);
    this.part("failures").textContent = failures.length === 0 ? "no failures" : "failures " + failures.map(([code, count]) => `${code}: ${count}`).join(", ");
    this.part("failures").classList.toggle("error", failures.length > 0);
    this.part("temperatures").textContent = figures.temperatures.map(({name, celsius}) => `${name} ${celsius.toFixed(1)} °C`).join(", ");
  }

  // The program is there again, maybe another one.
  restart() {
    this.shown.restart();
  }

  // The program has gone.
  pause() {
    this.shown.feed(false);
  }

  press(key) {
    const parts = {f: "fit", 1: "actual", "+": "zoom-in", "=": "zoom-in", "-": "zoom-out", " ": "pause", s: "save", x: "cross", g: "grid", r: "draw-area"};
    const name = parts[key];
    if (!name) return false;
    this.part(name).click();
    if (name === "draw-area") this.part("picture").focus();
    return true;
  }

  #hear(onChosen) {
    const on = (name, action) => this.part(name).addEventListener("click", action);
    const flip = (name, action) => on(name, () => action(this.#flip(name)));
    on("title", () => onChosen(this));
    on("fit", () => this.picture.change((view) => view.fit()));
    on("actual", () => this.picture.change((view) => view.zoomTo(1)));
    on("zoom-in", () => this.picture.change((view) => view.zoomIn()));
    on("zoom-out", () => this.picture.change((view) => view.zoomOut()));
    flip("pause", async (isHeld) => {
      await this.shown.hold(isHeld);
      // Once the frame that stays is painted.
      await new Promise(requestAnimationFrame);
      this.element.dataset.paused = this.shown.isHeld;
    });
    on("save", () => this.#save());
    flip("cross", (has) => {
      this.picture.hasCross = has;
      this.picture.draw();
    });
    flip("grid", (has) => {
      this.picture.hasGrid = has;
      this.picture.draw();
    });
    flip("draw-area", (draws) => this.picture.setDraws(draws));
    on("clear-area", () => this.#setArea(null));
    on("reset", () => {
      this.course = [];
      this.peak = 0;
    });
    this.part("pace").addEventListener("change", () => {
      this.shown.interval_ms = 1000 / Number(this.part("pace").value);
    });
    this.part("pace").setAttribute("aria-label", "Pictures a second, at most");
  }

  #flip(name) {
    const button = this.part(name);
    const isOn = button.getAttribute("aria-pressed") !== "true";
    button.setAttribute("aria-pressed", isOn);
    return isOn;
  }

  #pictureChanged() {
    this.view.setPicture(this.shown.picture.whole.width, this.shown.picture.whole.height);
    this.#showScale();
    this.picture.draw();
    if (this.picture.pixel) this.#showPixel(this.picture.pixel);
  }

  // Pictures that follow each other soon show it by themselves; so many questions are not asked while the mouse moves.
  #looked() {
    this.#showScale();
    clearTimeout(this.lookDue);
    this.lookDue = setTimeout(() => this.shown.look(), 60);
  }

  #showScale() {
    if (!this.view.picture.width) return;
    const percents = this.view.scale * 100;
    this.part("zoom").textContent = `${percents < 10 ? percents.toFixed(1) : Math.round(percents)} %`;
    this.part("fit").setAttribute("aria-pressed", this.view.isFitted);
    this.part("actual").setAttribute("aria-pressed", this.view.scale === 1);
  }

  async #showPixel(pixel) {
    const output = this.part("position");
    if (!pixel || !this.shown.picture) {
      output.textContent = "";
      return;
    }
    if (this.isAsking) return;
    this.isAsking = true;
    const place = `x ${pixel.x}  y ${pixel.y}`;
    try {
      output.textContent = `${place}: ${(await this.shown.valuesAt(pixel)).join(" ")}`;
    } catch {
      output.textContent = place;
    }
    this.isAsking = false;
    const newest = this.picture.pixel;
    if (newest && (newest.x !== pixel.x || newest.y !== pixel.y)) this.#showPixel(newest);
    if (!newest) output.textContent = "";
  }

  async #setArea(area) {
    this.part("draw-area").setAttribute("aria-pressed", false);
    try {
      await api.post(this.index, "sharpness", {area: area && [area.x, area.y, area.width, area.height]});
      this.course = [];
      this.peak = 0;
    } catch (error) {
      this.part("answer").textContent = error.message;
    }
  }

  #showSharpness(event) {
    const area = event.sharpness_area;
    this.picture.sharpnessArea = area && {x: area[0], y: area[1], width: area[2], height: area[3]};
    this.part("clear-area").disabled = !area;
    this.course = [...this.course, event.sharpness].slice(-kCourseLength);
    this.peak = Math.max(this.peak, event.sharpness);
    this.part("sharpness").textContent = event.sharpness.toPrecision(4);
    this.part("peak").textContent = this.peak > 0 ? `${((100 * event.sharpness) / this.peak).toFixed(0)} % of the peak ${this.peak.toPrecision(4)}` : "";
    drawCourse(this.part("course"), this.course, kCourseLength, this.peak);
  }

  #showProblem(camera) {
    const element = this.part("problem");
    const {problem} = camera;
    const lines = problem ? [problem.sentence, problem.why, problem.to_do].flat().filter(Boolean) : [];
    if (camera.state === "lost") {
      lines.push(kGoesOn);
      this.part("figures").textContent = `since ${new Date(camera.since).toLocaleTimeString("en-GB")}`;
    }
    const text = lines.join("\n");
    // A screen reader reads it again when it is written again.
    if (element.textContent !== text) element.textContent = text;
    element.hidden = lines.length === 0;
  }

  async #save() {
    const answer = this.part("answer");
    try {
      const file = await this.shown.file();
      const link = document.createElement("a");
      const name = /filename="([^"]*)"/.exec(file.headers.get("Content-Disposition") ?? "");
      link.download = name ? name[1] : "picture.png";
      link.href = URL.createObjectURL(await file.blob());
      link.click();
      setTimeout(() => URL.revokeObjectURL(link.href), 10000);
      answer.textContent = `saved as ${link.download}`;
    } catch (error) {
      answer.textContent = error.message;
    }
  }
}

// shown_picture.js
// The picture that a page has of one camera: asked for at the size at which it is seen, and with its exact values.
import * as api from "/page/api.js";

// Asks again when nothing could be had.
const kRetryMs = 500;
// For a picture that is near, what is asked about the one that is shown waits so long.
const kNearMs = 300;

const pause = (ms) => new Promise((done) => setTimeout(done, ms));

function numbers(text) {
  return text.split(",").map(Number);
}

// A part of one frame: lossless with one pixel for each of the camera's, or made smaller.
async function decoded(answer) {
  const [x, y, width, height] = numbers(answer.headers.get("X-Kelcam-Region"));
  const bitmap = await createImageBitmap(await answer.blob(), {colorSpaceConversion: "none", premultiplyAlpha: "none"});
  return {
    frame: Number(answer.headers.get("X-Kelcam-Frame")),
    whole: {width: Number(answer.headers.get("X-Kelcam-Width")), height: Number(answer.headers.get("X-Kelcam-Height"))},
    area: {x, y, width, height},
    bitmap,
    isExact: bitmap.width === width,
  };
}

export class ShownPicture {
  // onChange() when another picture is there; view: a ViewWindow.
  constructor(camera, view, onChange) {
    this.camera = camera;
    this.view = view;
    this.onChange = onChange;
    this.picture = null;
    this.isHeld = false;
    // Whether the camera sends pictures, and the program is there to bring them.
    this.isFed = false;
    this.interval_ms = 100;
    this.error = "";
    this.questions = 0;
    this.underWay = null;
    // Nobody waits for a page that nobody sees: a browser has few connections for all of its pages.
    document.addEventListener("visibilitychange", () => {
      if (document.hidden) this.waiting?.abort();
    });
    window.addEventListener("pagehide", () => this.waiting?.abort());
    this.#follow();
  }

  // The frame that is shown; 0: none.
  get frame() {
    return this.picture?.frame ?? 0;
  }

  // Kept as soon as the frame that stays is there.
  async hold(isHeld) {
    this.isHeld = isHeld;
    if (isHeld) await this.#settle();
  }

  // Without pictures to come nothing waits for one.
  feed(isFed) {
    this.isFed = isFed;
    if (!isFed) this.waiting?.abort();
  }

  // One picture, whether or not others come.
  ask() {
    this.isAsked = true;
  }

  // Frames are counted anew.
  restart() {
    this.after = 0;
    this.isRenewed = true;
    this.ask();
    this.waiting?.abort();
  }

  // Another part is seen, or another size. Unless the picture is held, the newest frame shows it as well.
  async look() {
    if (!this.isHeld) return this.restart();
    if (!this.picture || this.isLooking) {
      this.looksAgain = this.isLooking;
      return;
    }
    this.isLooking = true;
    do {
      this.looksAgain = false;
      await this.#lookAtHeld();
    } while (this.looksAgain);
    this.isLooking = false;
  }

  // Red, green and blue, or grey, of a pixel of the frame that is shown. Throws what the program says.
  async valuesAt(pixel) {
    const {picture} = this;
    const x = pixel.x - picture.area.x;
    const y = pixel.y - picture.area.y;
    if (picture.isExact && x >= 0 && y >= 0 && x < picture.area.width && y < picture.area.height) {
      const [red, green, blue] = this.#pixels(picture).getImageData(x, y, 1, 1).data;
      return this.isGrey ? [red] : [red, green, blue];
    }
    const answer = await this.#ask((frame) => api.get(this.camera, "pixel", {frame, ...pixel}));
    return (await answer.json()).values;
  }

  // The file of the frame that is shown.
  file() {
    return this.#ask((frame) => api.get(this.camera, "save", {frame}));
  }

  // The program keeps for the page the frame that it has sent last. So no picture may be under way while something is asked
  // about the one that is shown.
  async #ask(question) {
    this.questions += 1;
    try {
      await this.#settle();
      return await question(this.frame);
    } finally {
      this.questions -= 1;
      if (this.questions === 0) this.goOn?.();
    }
  }

  // A picture that is near is taken; after that none is under way.
  async #settle() {
    const due = setTimeout(() => this.waiting?.abort(), kNearMs);
    await this.underWay;
    clearTimeout(due);
  }

  async #lookAtHeld() {
    try {
      const answer = await this.#ask((frame) => api.get(this.camera, "region", {frame, ...this.#wanted()}));
      this.#take(await decoded(answer));
    } catch {
      // The program does not have the frame any more, as after its restart.
    }
  }

  // The context of a canvas with the exact pixels, made when they are asked for.
  #pixels(picture) {
    if (this.copied !== picture) {
      const canvas = new OffscreenCanvas(picture.bitmap.width, picture.bitmap.height);
      this.copy = canvas.getContext("2d", {willReadFrequently: true});
      this.copy.drawImage(picture.bitmap, 0, 0);
      this.copied = picture;
    }
    return this.copy;
  }

  #wanted() {
    const {view} = this;
    const seen = view.visible();
    const area = view.isWhole() ? {} : {x: seen.x, y: seen.y, w: seen.width, h: seen.height};
    const width = view.picture.width ? Math.min(seen.width, Math.ceil(seen.width * view.scale)) : view.canvas.width;
    return {...area, width: Math.max(1, Math.round(width))};
  }

  #take(picture) {
    this.picture?.bitmap.close();
    this.picture = picture;
    this.after = picture.frame;
    this.copied = null;
    this.onChange();
  }

  async #follow() {
    this.after = 0;
    await this.view.measured;
    for (;;) {
      const began = performance.now();
      if (this.questions > 0) await new Promise((done) => (this.goOn = done));
      const isWanted = !this.isHeld && !document.hidden && (this.isFed || this.isAsked);
      if (!isWanted) {
        await pause(this.interval_ms);
        continue;
      }
      this.isAsked = false;
      this.underWay = this.#next();
      const isThere = await this.underWay;
      await pause(isThere ? Math.max(0, this.interval_ms - (performance.now() - began)) : kRetryMs);
    }
  }

  // Whether a picture may be had at once again. Once the program has answered, the picture is taken in any case.
  async #next() {
    this.waiting = new AbortController();
    this.isRenewed = false;
    const {signal} = this.waiting;
    try {
      const answer = await api.get(this.camera, "picture", {after: this.after, ...this.#wanted()}, signal);
      this.waiting = null;
      if (answer.status !== 204) this.#take(await decoded(answer));
      if (this.isRenewed) this.after = 0;
      this.error = "";
      return true;
    } catch (error) {
      if (signal.aborted) return true;
      this.error = error.message;
      // The picture has another size now, so that the area may lie outside.
      if (error.status === 400) this.view.fit();
      return false;
    }
  }
}

// shown_picture.js
// The picture that a page has of one camera: asked for at the size at which it is seen, and with its exact values.
import * as api from "/page/api.js";

// Asks again when nothing could be had.
const kRetryMs = 500;
// Of pictures that follow each other, the next one is near.
const kFlowMs = 600;

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
    this.taken = -Infinity;
    this.#follow();
  }

  // The frame that is shown; 0: none.
  get frame() {
    return this.picture?.frame ?? 0;
  }

  hold(isHeld) {
    this.isHeld = isHeld;
    if (isHeld) this.waiting?.abort();
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
    this.ask();
    this.waiting?.abort();
  }

  // Another part is seen, or another size. Where the next frame may never come, of the same frame.
  async look() {
    if (!this.isHeld && performance.now() - this.taken < kFlowMs) {
      this.waiting?.abort();
      return;
    }
    if (!this.picture || this.isLooking) {
      this.looksAgain = this.isLooking;
      return;
    }
    this.isLooking = true;
    try {
      do {
        this.looksAgain = false;
        const answer = await api.get(this.camera, "region", {frame: this.frame, ...this.#wanted()});
        this.#take(await decoded(answer));
      } while (this.looksAgain);
    } catch {
      // Gone: the next frame is on its way, or there is none.
    }
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
    return (await (await api.get(this.camera, "pixel", {frame: picture.frame, ...pixel})).json()).values;
  }

  // The file of the frame that is shown. One that has gone meanwhile gives way to the next.
  async file() {
    try {
      return await api.get(this.camera, "save", {frame: this.frame});
    } catch (error) {
      if (error.status !== 410 || this.isHeld) throw error;
      return api.get(this.camera, "save", {frame: this.frame});
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
    this.taken = performance.now();
    this.copied = null;
    this.onChange();
  }

  async #follow() {
    this.after = 0;
    for (;;) {
      const began = performance.now();
      const isWanted = !this.isHeld && !document.hidden && (this.isFed || this.isAsked);
      this.isAsked = false;
      const isThere = isWanted && (await this.#next());
      await pause(isWanted && !isThere ? kRetryMs : Math.max(0, this.interval_ms - (performance.now() - began)));
    }
  }

  // Whether a picture may be had at once again.
  async #next() {
    this.waiting = new AbortController();
    const {signal} = this.waiting;
    try {
      const answer = await api.get(this.camera, "picture", {after: this.after, ...this.#wanted()}, signal);
      if (answer.status === 204) return true;
      const picture = await decoded(answer);
      if (!this.isHeld && !signal.aborted) this.#take(picture);
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

// view_window.js
// Which part of a picture a canvas shows, and how large.

// Made larger, all pixels of the camera are equally large. Made smaller, a step is a fifth.
const kLargerScales = [1, 2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64];
const kLargestScale = kLargerScales.at(-1);
const kSmallerStep = 1.25;

// Sizes are in pixels of the canvas, positions in pixels of the picture. `scale` is canvas pixels for each of the picture.
export class ViewWindow {
  constructor() {
    this.canvas = {width: 1, height: 1};
    this.picture = {width: 0, height: 0};
    this.isFitted = true;
    this.scale = 1;
    this.centre = {x: 0, y: 0};
    // Kept when the size of the canvas is known.
    this.measured = new Promise((done) => (this.onMeasured = done));
  }

  setCanvas(width, height) {
    this.canvas = {width, height};
    this.#keep();
    this.onMeasured();
  }

  setPicture(width, height) {
    if (width === this.picture.width && height === this.picture.height) return;
    this.picture = {width, height};
    this.centre = {x: width / 2, y: height / 2};
    this.#keep();
  }

  fit() {
    this.isFitted = true;
    this.#keep();
  }

  // The point of the picture under `at` stays there.
  zoomTo(scale, at = {x: this.canvas.width / 2, y: this.canvas.height / 2}) {
    const point = this.pointAt(at);
    this.isFitted = false;
    this.scale = Math.min(Math.max(scale, Math.min(this.#fittingScale(), 1)), kLargestScale);
    this.centre = {
      x: point.x - (at.x - this.canvas.width / 2) / this.scale,
      y: point.y - (at.y - this.canvas.height / 2) / this.scale,
    };
    this.#keep();
  }

  zoomIn(at) {
    const larger = kLargerScales.find((scale) => scale > this.scale * 1.001) ?? kLargestScale;
    this.zoomTo(this.scale < 1 ? Math.min(this.scale * kSmallerStep, 1) : larger, at);
  }

  zoomOut(at) {
    const smaller = kLargerScales.findLast((scale) => scale < this.scale * 0.999);
    this.zoomTo(smaller ?? this.scale / kSmallerStep, at);
  }

  moveBy(dx, dy) {
    this.centre = {x: this.centre.x - dx / this.scale, y: this.centre.y - dy / this.scale};
    this.#keep();
  }

  // Moves as little as shows this pixel.
  reveal(pixel) {
    const seen = this.visible();
    const shift = (value, low, high) => (value < low ? value - low : value >= high ? value - high + 1 : 0);
    this.centre.x += shift(pixel.x, seen.x, seen.x + seen.width);
    this.centre.y += shift(pixel.y, seen.y, seen.y + seen.height);
    this.#keep();
  }

  pointAt(at) {
    return {
      x: this.centre.x + (at.x - this.canvas.width / 2) / this.scale,
      y: this.centre.y + (at.y - this.canvas.height / 2) / this.scale,
    };
  }

  // The pixel of the picture under a place of the canvas; null: none.
  pixelAt(at) {
    const point = this.pointAt(at);
    const pixel = {x: Math.floor(point.x), y: Math.floor(point.y)};
    const isInside = pixel.x >= 0 && pixel.y >= 0 && pixel.x < this.picture.width && pixel.y < this.picture.height;
    return isInside ? pixel : null;
  }

  // Where a rectangle of the picture is on the canvas.
  placeOf(area) {
    return {
      x: (area.x - this.centre.x) * this.scale + this.canvas.width / 2,
      y: (area.y - this.centre.y) * this.scale + this.canvas.height / 2,
      width: area.width * this.scale,
      height: area.height * this.scale,
    };
  }

  // The smallest rectangle of whole pixels that has all that is seen.
  visible() {
    const first = this.pointAt({x: 0, y: 0});
    const last = this.pointAt({x: this.canvas.width, y: this.canvas.height});
    const x = Math.max(0, Math.floor(first.x + 1e-6));
    const y = Math.max(0, Math.floor(first.y + 1e-6));
    return {
      x,
      y,
      width: Math.max(1, Math.min(this.picture.width, Math.ceil(last.x - 1e-6)) - x),
      height: Math.max(1, Math.min(this.picture.height, Math.ceil(last.y - 1e-6)) - y),
    };
  }

  isWhole() {
    const seen = this.visible();
    return seen.width >= this.picture.width && seen.height >= this.picture.height;
  }

  #fittingScale() {
    if (!this.picture.width) return 1;
    return Math.min(this.canvas.width / this.picture.width, this.canvas.height / this.picture.height);
  }

  // No more border than a picture that is smaller than the canvas has.
  #keep() {
    if (this.isFitted) {
      this.scale = this.#fittingScale();
      this.centre = {x: this.picture.width / 2, y: this.picture.height / 2};
    }
    for (const [axis, side] of [["x", "width"], ["y", "height"]]) {
      const half = this.canvas[side] / this.scale / 2;
      const size = this.picture[side];
      this.centre[axis] = half * 2 >= size ? size / 2 : Math.min(Math.max(this.centre[axis], half), size - half);
    }
  }
}

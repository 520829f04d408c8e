// picture_view.js
// The canvas on which a camera's picture is: zoom, hair lines, the marked pixel, the area that is drawn.

const kSharpnessColour = "#ffb000";
const kLineColour = "rgba(255, 255, 255, 0.75)";
const kShadowColour = "rgba(0, 0, 0, 0.6)";
const kGridParts = 4;

function spanned(a, b) {
  const x = Math.min(a.x, b.x);
  const y = Math.min(a.y, b.y);
  return {x, y, width: Math.abs(a.x - b.x) + 1, height: Math.abs(a.y - b.y) + 1};
}

export class PictureView {
  // onLook(): another part is seen; onPixel(pixel or null): the marked pixel has changed; onArea(area): one was drawn.
  constructor(canvas, view, shown, {onLook, onPixel, onArea}) {
    Object.assign(this, {canvas, view, shown, onLook, onPixel, onArea});
    this.context = canvas.getContext("2d");
    this.hasCross = false;
    this.hasGrid = false;
    this.draws = false;
    this.pixel = null;
    this.corner = null;
    // Where pointers are pressed, by their id.
    this.down = new Map();
    this.sharpnessArea = null;
    this.isDimmed = false;
    new ResizeObserver(() => this.#resize()).observe(canvas);
    this.#hear();
  }

  change(action) {
    action(this.view);
    this.draw();
    this.onLook();
  }

  setDraws(draws) {
    this.draws = draws;
    this.corner = null;
    this.canvas.classList.toggle("draws", draws);
    this.draw();
  }

  draw() {
    if (this.isDue) return;
    this.isDue = true;
    requestAnimationFrame(() => {
      this.isDue = false;
      this.#paint();
    });
  }

  #paint() {
    const {context, view} = this;
    const {picture} = this.shown;
    context.clearRect(0, 0, this.canvas.width, this.canvas.height);
    if (!picture) return;
    // Pixels of the camera have crisp edges from the size on at which each is seen.
    context.imageSmoothingEnabled = view.scale < 1;
    context.imageSmoothingQuality = "medium";
    context.globalAlpha = this.isDimmed ? 0.35 : 1;
    const place = view.placeOf(picture.area);
    context.drawImage(picture.bitmap, place.x, place.y, place.width, place.height);
    context.globalAlpha = 1;
    this.canvas.closest("section").dataset.frame = picture.frame;
    const {area} = picture;
    this.canvas.closest("section").dataset.region = [area.x, area.y, area.width, area.height].join(",");
    if (this.hasGrid) this.#paintGrid();
    if (this.hasCross) this.#paintCross();
    if (this.sharpnessArea) this.#paintArea(this.sharpnessArea, []);
    if (this.corner && this.pixel) this.#paintArea(spanned(this.corner, this.pixel), [6, 4]);
    if (this.pixel && this.isMarked) this.#paintArea({...this.pixel, width: 1, height: 1}, []);
  }

  #whole() {
    return this.view.placeOf({x: 0, y: 0, ...this.view.picture});
  }

  // On any picture: a light line on a dark one.
  #stroke(path, colour, dashes = []) {
    const {context} = this;
    context.setLineDash(dashes);
    for (const [style, width] of [[kShadowColour, 3], [colour, 1]]) {
      context.strokeStyle = style;
      context.lineWidth = width * devicePixelRatio;
      context.stroke(path);
    }
  }

  #lines(shares) {
    const whole = this.#whole();
    const path = new Path2D();
    for (const share of shares) {
      path.moveTo(whole.x + whole.width * share, whole.y);
      path.lineTo(whole.x + whole.width * share, whole.y + whole.height);
      path.moveTo(whole.x, whole.y + whole.height * share);
      path.lineTo(whole.x + whole.width, whole.y + whole.height * share);
    }
    return path;
  }

  #paintGrid() {
    this.#stroke(this.#lines(Array.from({length: kGridParts - 1}, (_, i) => (i + 1) / kGridParts)), kLineColour);
  }

  #paintCross() {
    this.#stroke(this.#lines([0.5]), kLineColour);
  }

  #paintArea(area, dashes) {
    const place = this.view.placeOf(area);
    const path = new Path2D();
    path.rect(place.x, place.y, Math.max(place.width, 3), Math.max(place.height, 3));
    this.#stroke(path, kSharpnessColour, dashes);
  }

  #resize() {
    const width = Math.max(1, Math.round(this.canvas.clientWidth * devicePixelRatio));
    const height = Math.max(1, Math.round(this.canvas.clientHeight * devicePixelRatio));
    if (width === this.view.canvas.width && height === this.view.canvas.height) return;
    this.canvas.width = width;
    this.canvas.height = height;
    this.change((view) => view.setCanvas(width, height));
  }

  #placeOf(event) {
    const box = this.canvas.getBoundingClientRect();
    return {x: (event.clientX - box.left) * devicePixelRatio, y: (event.clientY - box.top) * devicePixelRatio};
  }

  #mark(pixel, isMarked) {
    this.pixel = pixel;
    this.isMarked = isMarked;
    this.onPixel(pixel);
    if (isMarked || this.corner) this.draw();
  }

  #finishArea() {
    const area = spanned(this.corner, this.pixel);
    this.setDraws(false);
    this.onArea(area);
  }

  // One pointer moves the picture, the distance of two fingers zooms it.
  #drag(id, at) {
    const from = this.down.get(id);
    this.down.set(id, at);
    if (this.draws) return;
    const other = [...this.down].find(([each]) => each !== id)?.[1];
    if (!other) return this.change((view) => view.moveBy(at.x - from.x, at.y - from.y));
    const distance = (place) => Math.max(1, Math.hypot(place.x - other.x, place.y - other.y));
    this.change((view) => view.zoomTo((view.scale * distance(at)) / distance(from), other));
  }

  #hear() {
    const {canvas} = this;
    canvas.addEventListener("wheel", (event) => {
      event.preventDefault();
      const at = this.#placeOf(event);
      this.change((view) => (event.deltaY < 0 ? view.zoomIn(at) : view.zoomOut(at)));
    }, {passive: false});
    canvas.addEventListener("pointerdown", (event) => {
      canvas.setPointerCapture(event.pointerId);
      this.down.set(event.pointerId, this.#placeOf(event));
      if (this.draws && this.down.size === 1) this.corner = this.view.pixelAt(this.#placeOf(event));
    });
    canvas.addEventListener("pointermove", (event) => {
      const at = this.#placeOf(event);
      if (this.down.has(event.pointerId)) this.#drag(event.pointerId, at);
      const pixel = this.view.pixelAt(at);
      if (pixel || !this.corner) this.#mark(pixel, false);
    });
    canvas.addEventListener("pointerup", (event) => {
      this.down.delete(event.pointerId);
      if (this.draws && this.corner && this.pixel) this.#finishArea();
    });
    canvas.addEventListener("pointercancel", (event) => this.down.delete(event.pointerId));
    canvas.addEventListener("pointerleave", () => {
      if (this.down.size === 0) this.#mark(null, false);
    });
    canvas.addEventListener("keydown", (event) => this.#press(event));
  }

  #press(event) {
    const steps = {ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1]}[event.key];
    if (event.key === "Enter" && this.draws && this.pixel) {
      event.preventDefault();
      if (this.corner) return this.#finishArea();
      this.corner = this.pixel;
      return this.draw();
    }
    if (event.key === "Escape") return this.setDraws(false);
    if (!steps || !this.view.picture.width) return;
    event.preventDefault();
    const {width, height} = this.view.picture;
    const from = this.pixel ?? {x: Math.floor(width / 2), y: Math.floor(height / 2)};
    const by = event.shiftKey ? 10 : 1;
    const pixel = {
      x: Math.min(Math.max(from.x + steps[0] * by, 0), width - 1),
      y: Math.min(Math.max(from.y + steps[1] * by, 0), height - 1),
    };
    this.change((view) => view.reveal(pixel));
    this.#mark(pixel, true);
  }
}

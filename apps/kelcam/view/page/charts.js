// charts.js
// Histogram and the course of a figure, on small canvases.

function colour(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(name);
}

// The context of a canvas that is as fine as the screen.
function cleared(canvas) {
  const width = Math.round(canvas.clientWidth * devicePixelRatio);
  const height = Math.round(canvas.clientHeight * devicePixelRatio);
  if (canvas.width !== width || canvas.height !== height) {
    canvas.width = width;
    canvas.height = height;
  }
  const context = canvas.getContext("2d");
  context.clearRect(0, 0, width, height);
  return context;
}

const kChannelColours = {1: ["--grey"], 3: ["--red", "--green", "--blue"]};
const kMarkWidth = 4;

// `histograms`: 256 counts of each channel; `clipped`: the shares of the least and of the greatest value of each. The
// ends are as high as their neighbours and have a mark, as a clipped picture would flatten everything else.
export function drawHistogram(canvas, histograms, clipped) {
  const context = cleared(canvas);
  const {width, height} = canvas;
  const colours = kChannelColours[histograms.length].map(colour);
  const highest = Math.max(1, ...histograms.flatMap((counts) => counts.slice(1, -1)));
  context.lineWidth = devicePixelRatio;
  histograms.forEach((counts, channel) => {
    const path = new Path2D();
    path.moveTo(0, height);
    counts.forEach((count, value) => {
      path.lineTo((value / 255) * width, height - Math.sqrt(Math.min(count / highest, 1)) * (height - 2));
    });
    path.lineTo(width, height);
    context.fillStyle = colours[channel];
    context.globalAlpha = 0.25;
    context.fill(path);
    context.globalAlpha = 1;
    context.strokeStyle = colours[channel];
    context.stroke(path);
  });
  context.fillStyle = colour("--warning");
  const mark = kMarkWidth * devicePixelRatio;
  if (clipped.some(([dark]) => dark > 0)) context.fillRect(0, 0, mark, mark * 2);
  if (clipped.some(([, bright]) => bright > 0)) context.fillRect(width - mark, 0, mark, mark * 2);
}

// The least part of the peak that is as high as the canvas: less is noise.
const kLeastSpan = 0.02;

// The course between its least value and the peak, which has a line of its own. The newest value is on the right.
export function drawCourse(canvas, values, most, peak) {
  const context = cleared(canvas);
  const {width, height} = canvas;
  const least = Math.min(...values, peak * (1 - kLeastSpan));
  const y = (value) => height - 2 - ((value - least) / Math.max(peak - least, Number.MIN_VALUE)) * (height - 4);
  context.strokeStyle = colour("--faint");
  context.setLineDash([4, 4]);
  context.beginPath();
  context.moveTo(0, y(peak));
  context.lineTo(width, y(peak));
  context.stroke();
  context.setLineDash([]);
  context.strokeStyle = colour("--accent");
  context.lineWidth = 1.5 * devicePixelRatio;
  context.beginPath();
  values.forEach((value, i) => context.lineTo((width * (i + most - values.length)) / (most - 1), y(value)));
  context.stroke();
}

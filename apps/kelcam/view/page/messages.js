// messages.js
// The driver's messages as they come, and the search in them.

const kMost = 500;
// A camera's messages come a hundred a second. They appear together, so that they leave the page its time for pictures.
const kTogetherMs = 250;

function itemOf({time, text}) {
  const item = document.createElement("li");
  const when = document.createElement("time");
  when.textContent = time.slice(11, 23);
  when.dateTime = time;
  const what = document.createElement("pre");
  what.textContent = text.trimEnd();
  item.append(when, what);
  return item;
}

export class Messages {
  constructor() {
    this.list = document.getElementById("messages");
    this.search = document.getElementById("search");
    this.follow = document.getElementById("follow");
    this.found = document.getElementById("found");
    this.waiting = [];
    this.search.addEventListener("input", () => this.#filter(this.list.children));
    this.follow.addEventListener("change", () => this.#scroll());
  }

  add(message) {
    this.waiting.push(message);
    if (this.waiting.length > kMost) this.waiting.shift();
    this.due ??= setTimeout(() => this.#show(), kTogetherMs);
  }

  clear() {
    this.waiting = [];
    this.list.replaceChildren();
    this.#filter([]);
  }

  #show() {
    this.due = null;
    const items = this.waiting.map(itemOf);
    this.waiting = [];
    const excess = this.list.children.length + items.length - kMost;
    for (let i = 0; i < excess; ++i) this.list.firstElementChild.remove();
    this.list.append(...items);
    this.#filter(items);
  }

  // Hides those of these items that the search does not find.
  #filter(items) {
    const wanted = this.search.value.toLowerCase();
    for (const item of items) item.hidden = wanted !== "" && !item.textContent.toLowerCase().includes(wanted);
    const all = this.list.children.length;
    this.found.textContent = wanted ? `${all - this.list.querySelectorAll("[hidden]").length} of ${all}` : "";
    this.#scroll();
  }

  #scroll() {
    if (this.follow.checked) this.list.scrollTop = this.list.scrollHeight;
  }
}

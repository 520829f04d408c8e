// messages.js
// The driver's messages as they come, and the search in them.

const kMost = 500;

export class Messages {
  constructor() {
    this.list = document.getElementById("messages");
    this.search = document.getElementById("search");
    this.follow = document.getElementById("follow");
    this.found = document.getElementById("found");
    this.search.addEventListener("input", () => this.#filter());
    this.follow.addEventListener("change", () => this.#scroll());
  }

  add({time, text}) {
    const item = document.createElement("li");
    const when = document.createElement("time");
    when.textContent = time.slice(11, 23);
    when.dateTime = time;
    const what = document.createElement("pre");
    what.textContent = text.trimEnd();
    item.append(when, what);
    this.list.append(item);
    while (this.list.children.length > kMost) this.list.firstElementChild.remove();
    item.hidden = !this.#matches(item);
    this.#count();
    this.#scroll();
  }

  clear() {
    this.list.replaceChildren();
    this.#count();
  }

  #matches(item) {
    return item.textContent.toLowerCase().includes(this.search.value.toLowerCase());
  }

  #filter() {
    for (const item of this.list.children) item.hidden = !this.#matches(item);
    this.#count();
    this.#scroll();
  }

  #count() {
    const shown = [...this.list.children].filter((item) => !item.hidden).length;
    this.found.textContent = this.search.value ? `${shown} of ${this.list.children.length}` : "";
  }

  #scroll() {
    if (this.follow.checked) this.list.scrollTop = this.list.scrollHeight;
  }
}

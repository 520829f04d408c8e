// api.js
// The program behind the page: its requests and its events.

const token = new URLSearchParams(location.search).get("token");

// The page's name, under which the program keeps the frames that it shows.
export const page = Array.from(crypto.getRandomValues(new Uint8Array(12)), (byte) => byte.toString(16).padStart(2, "0")).join("");

function address(path, values) {
  const query = new URLSearchParams(values);
  if (token) query.set("token", token);
  return `${path}?${query}`;
}

async function checked(answer) {
  if (answer.ok) return answer;
  const body = await answer.json().catch(() => ({}));
  const error = new Error(body.error ?? `the program answered ${answer.status}`);
  error.status = answer.status;
  throw error;
}

// Answers with a Response; throws an Error with the program's sentence, and its `status`.
export async function get(camera, name, values, signal) {
  return checked(await fetch(address(`/api/cameras/${camera}/${name}`, {page, ...values}), {signal}));
}

export async function post(camera, name, body) {
  const request = {
    method: "POST",
    headers: {"Content-Type": "application/json", "X-Kelcam": "1"},
    body: JSON.stringify(body),
  };
  return (await checked(await fetch(address(`/api/cameras/${camera}/${name}`, {}), request))).json();
}

const kRetryMs = 1000;

// Calls handlers[event](data) for each event, handlers.open and handlers.lost when the stream begins and breaks. It goes on
// trying for as long as the page is there. A page that nobody sees has no stream: a browser has six connections for all of
// its pages together.
export function listen(handlers) {
  let source = null;
  const close = () => {
    source?.close();
    source = null;
  };
  const open = () => {
    close();
    if (document.hidden) return;
    const own = new EventSource(address("/api/events", {page}));
    source = own;
    for (const name of ["cameras", "frame", "figures", "message"]) {
      own.addEventListener(name, (event) => handlers[name](JSON.parse(event.data)));
    }
    own.onopen = () => handlers.open();
    own.onerror = () => {
      if (source !== own) return;
      close();
      handlers.lost();
      setTimeout(() => source ?? open(), kRetryMs);
    };
  };
  document.addEventListener("visibilitychange", () => (document.hidden ? close() : open()));
  window.addEventListener("pagehide", close);
  open();
}

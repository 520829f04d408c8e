// main.js
// Shows the pictures of the first camera.
const page = crypto.randomUUID().replaceAll("-", "");
const token = new URLSearchParams(location.search).get("token");
const suffix = token ? "&token=" + token : "";
const image = document.getElementById("picture");

async function showPictures() {
  for (let frame = 0; ;) {
    const answer = await fetch(`/api/cameras/0/picture?page=${page}&after=${frame}&width=1280${suffix}`);
    if (answer.status !== 200) continue;
    frame = answer.headers.get("X-Kelcam-Frame");
    const address = URL.createObjectURL(await answer.blob());
    await new Promise((done) => {
      image.onload = done;
      image.src = address;
    });
    URL.revokeObjectURL(address);
  }
}

new EventSource(`/api/events?page=${page}${suffix}`).onopen = showPictures;

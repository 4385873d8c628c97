// The navigation shows where one is.
document.querySelector("nav .here")?.scrollIntoView({block: "center"});

// The search of the manual: all of it in the browser. The index is a list of [title, page's title, address, text].

const input = document.getElementById("search");
const found = document.getElementById("found");
const kMost = 40;
const kAround = 60;  // letters of the text to either side of what was found

// All words must be there; a title that is the word counts most, then one that begins with it, then any title.
function search(words) {
  const hits = [];
  for (const [title, page, address, text] of SEARCH_INDEX) {
    const low = title.toLowerCase();
    const body = text.toLowerCase();
    let score = 0;
    for (const word of words) {
      const name = low.split(/::|\W/).includes(word);
      const here = low === word ? 100 : low.endsWith("::" + word) ? 90 : name ? 60 : low.startsWith(word) ? 40 : low.includes(word) ? 20 :
          page.toLowerCase().includes(word) ? 5 : body.includes(word) ? 2 : 0;
      if (!here) { score = 0; break; }
      score += here;
    }
    if (score) hits.push({score: score - title.length / 1000, title, page, address, text});
  }
  return hits.sort((a, b) => b.score - a.score).slice(0, kMost);
}

function escaped(text) {
  return text.replace(/[&<>"]/g, (c) => ({"&": "&amp;", "<": "&lt;", ">": "&gt;", '"': "&quot;"})[c]);
}

// The text about the first word that is found in it, the words marked.
function excerpt(text, words) {
  const low = text.toLowerCase();
  const at = Math.max(0, Math.min(...words.map((w) => low.indexOf(w)).filter((i) => i >= 0), text.length));
  const from = at >= text.length ? 0 : Math.max(0, at - kAround);
  const part = escaped((from ? "…" : "") + text.slice(from, from + 3 * kAround) + "…");
  const pattern = words.map((w) => escaped(w).replace(/[.*+?^${}()|[\]\\]/g, "\\$&")).join("|");
  return part.replace(new RegExp(pattern, "gi"), "<mark>$&</mark>");
}

function show() {
  const words = input.value.toLowerCase().split(/\s+/).filter(Boolean);
  found.hidden = !words.length;
  if (!words.length) return;
  const hits = search(words);
  found.innerHTML = hits.length ? hits.map((h, i) =>
      `<a href="${ROOT}${escaped(h.address)}"${i ? "" : ' class="chosen"'}><b>${escaped(h.title)}</b> ` +
      `<span class="where">${escaped(h.page)}</span><p>${excerpt(h.text, words)}</p></a>`).join("") :
      '<p class="none">Nothing is found.</p>';
}

function choose(step) {
  const all = [...found.querySelectorAll("a")];
  const old = all.findIndex((a) => a.classList.contains("chosen"));
  const next = Math.min(Math.max(old + step, 0), all.length - 1);
  if (old < 0) return;
  all[old].classList.remove("chosen");
  all[next].classList.add("chosen");
  all[next].scrollIntoView({block: "nearest"});
}

input.addEventListener("input", show);
input.addEventListener("focus", show);
input.addEventListener("keydown", (event) => {
  if (event.key === "ArrowDown") choose(1);
  else if (event.key === "ArrowUp") choose(-1);
  else if (event.key === "Enter") found.querySelector("a.chosen")?.click();
  else if (event.key === "Escape") input.blur();
  else return;
  if (event.key !== "Escape") event.preventDefault();
  else found.hidden = true;
});
document.addEventListener("keydown", (event) => {
  if (event.key !== "/" || event.target.matches("input, textarea")) return;
  event.preventDefault();
  input.focus();
});
document.addEventListener("click", (event) => {
  if (!event.target.closest(".search, #found")) found.hidden = true;
  else if (event.target.closest("#found a")) found.hidden = true;
});

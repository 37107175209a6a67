// Search and filters of the report page. Everything it finds is in the page already; nothing is fetched or stored. Its
// state stands in the address behind the #, as "q=W25Q&maker=WINBOND": a view can be passed on as a link.
"use strict";
(() => {
  const MOST_NAMES = 200; // that are shown; the rest is counted
  const FIELDS = ["q", "maker", "density", "kind", "hidden"];
  const byId = (id) => document.getElementById(id);
  const form = byId("search");
  const statusLine = byId("status");

  // ---- rows of the two lists ----

  // The digits of an identification, written in one or byte by byte; empty for other texts.
  function hexOf(text) {
    const bytes = text.split(/[\s:,-]+/).map((byte) => byte.replace(/^0x/, ""));
    const isHex = bytes.length === 1 ? /^[0-9a-f]{4,}$/.test(bytes[0]) : bytes.every((byte) => /^[0-9a-f]{2}$/.test(byte));
    return isHex ? bytes.join("") : "";
  }

  // A number and its unit are one word.
  const wordsOf = (text) => (text.match(/\d+\s*[km](?:bit|ib)\b|\S+/g) ?? [])
    .map((word) => word.replace(/^(\d+)\s*([km](?:bit|ib))$/, "$1 $2"));

  const rowsOf = (section) => [...section.querySelectorAll(".list > tbody")].map((body) => {
    const cells = [...body.rows[0].cells].map((cell) => cell.textContent.trim());
    return {body, cells, text: cells.join(" ").toLowerCase(), shown: true};
  });
  const flashes = rowsOf(byId("flashes"));
  const records = rowsOf(byId("records"));
  for (const row of flashes) {
    row.id = row.body.querySelector("code").textContent.toLowerCase();
    row.isHidden = row.body.classList.contains("hid");
  }
  for (const row of records) // whom a record serves is searched too
    row.text += " " + row.body.querySelector(".served").textContent.toLowerCase();

  const matches = (row, words) => words.every((word) => row.text.includes(word));

  function isShown(row, state, words, hex) {
    return (!state.maker || row.cells[2] === state.maker) && (!state.density || row.cells[5] === state.density) &&
      (!state.kind || row.body.classList.contains(state.kind)) && (!state.default || row.cells[4] === "yes") &&
      (!state.hidden || row.isHidden === (state.hidden === "only")) &&
      (hex !== "" && row.id.startsWith(hex) || matches(row, words));
  }

  function show(rows, section, test) {
    let count = 0;
    for (const row of rows) {
      const shown = test(row);
      if (shown !== row.shown)
        row.body.hidden = !shown;
      row.shown = shown;
      count += shown;
    }
    byId(section).querySelector(".none").hidden = count > 0;
    byId(section).querySelector(".list").hidden = count === 0;
    return count;
  }

  // ---- names ----

  byId("found").querySelector("table").createTBody();
  let names = null; // made when a name is looked for the first time

  function readDevice(row, family, add) {
    const [device, partFile, familyFile] = [...row.cells].map((cell) => cell.textContent.trim());
    const place = {row, family, device, partFile, record: row.cells[3]};
    add(device, "device", "", place);
    add(partFile, "part file", "", {...place, device: ""});
    add(familyFile, "family file", "", {...place, device: "", partFile: ""});
    for (const item of row.querySelectorAll("li")) {
      const name = item.querySelector("b").textContent;
      const own = item.querySelector("em");
      add(name, "package", name, place);
      if (own && own.textContent.startsWith("= "))
        add(own.textContent.slice(2), "programmer name", "", place);
      for (const part of item.querySelectorAll("span, i"))
        for (const suffix of part.textContent.split(" "))
          if (suffix)
            add(suffix === "·" ? name : name + suffix, part.tagName === "I" ? "ordering name" : "part", name, place);
    }
  }

  function readNames() {
    const seen = new Set();
    names = [];
    const add = (name, kind, pack, place) => {
      const key = name.toUpperCase() + " " + kind;
      if (name && name !== "–" && !seen.has(key)) {
        seen.add(key);
        names.push({name, key: name.toUpperCase(), kind, pack, place});
      }
    };
    for (const family of document.querySelectorAll("#families > .family")) {
      const name = family.querySelector("summary b").textContent;
      add(name, "family", "", {row: family, family: name, device: "", partFile: "", record: family.querySelector("p")});
      for (const row of family.querySelectorAll(".devices > tbody > tr"))
        readDevice(row, name, add);
    }
  }

  // Exact ones first, then those that begin so, then the rest; each in the order of the page.
  function findNames(query) {
    const groups = [[], [], []];
    for (const name of names) {
      const at = name.key.indexOf(query);
      if (at >= 0)
        groups[name.key === query ? 0 : at === 0 ? 1 : 2].push(name);
    }
    return groups.flat();
  }

  function cell(row, text) {
    const place = row.insertCell();
    place.textContent = text;
    return place;
  }

  function nameRow(found, query) {
    const row = document.createElement("tr");
    const at = found.key.indexOf(query);
    const mark = document.createElement("mark");
    mark.textContent = found.name.slice(at, at + query.length);
    const head = document.createElement("th");
    head.scope = "row";
    head.append(found.name.slice(0, at), mark, found.name.slice(at + query.length));
    row.append(head);
    cell(row, found.kind);
    cell(row, found.pack);
    cell(row, found.place.device);
    cell(row, found.place.partFile);
    cell(row, found.place.family);
    const link = found.kind.endsWith("file") ? null : found.place.record.querySelector("a");
    cell(row, "").append(link ? link.cloneNode(true) : "");
    return row;
  }

  function showNames(query) {
    const isAsked = query.length > 1;
    byId("families").hidden = isAsked;
    byId("found").hidden = !isAsked;
    byId("names").querySelector(".none").hidden = true;
    if (!isAsked)
      return null;
    if (!names)
      readNames();
    const found = findNames(query);
    byId("found").querySelector("tbody").replaceChildren(...found.slice(0, MOST_NAMES).map((name) => nameRow(name, query)));
    byId("found").querySelector(".note").textContent =
      found.length > MOST_NAMES ? `${found.length - MOST_NAMES} more; write more of the name to see them.` : "";
    byId("found").hidden = found.length === 0;
    byId("names").querySelector(".none").hidden = found.length > 0;
    return found.length;
  }

  // ---- state ----

  const counts = {};
  for (const id of ["flash-count", "record-count", "name-count"])
    counts[id] = byId(id).textContent;

  function readForm() {
    const state = {default: byId("default").checked};
    for (const field of FIELDS)
      state[field] = byId(field).value.trim();
    return state;
  }

  function apply() {
    const state = readForm();
    const text = state.q.toLowerCase();
    const hex = hexOf(text);
    const words = hex !== "" && hex !== text ? [hex] : wordsOf(text);
    const isFiltered = state.maker || state.density || state.kind || state.hidden || state.default;
    const found = [
      show(flashes, "flashes", (row) => isShown(row, state, words, hex)),
      show(records, "records", (row) => matches(row, words)),
      showNames(state.q.toUpperCase()),
    ];
    const isAsked = state.q !== "";
    byId("flash-count").textContent = isAsked || isFiltered ? `${found[0]} of ${flashes.length}` : counts["flash-count"];
    byId("record-count").textContent = isAsked ? `${found[1]} of ${records.length}` : counts["record-count"];
    byId("name-count").textContent = found[2] === null ? counts["name-count"] : `${found[2]} found`;
    statusLine.textContent = isAsked || isFiltered
      ? `${found[0]} flashes, ${found[1]} device records, ${found[2] === null ? "all" : found[2]} names` : "";
    return state;
  }

  function hashOf(state, at) {
    const pairs = new URLSearchParams();
    for (const field of FIELDS)
      if (state[field])
        pairs.set(field, state[field]);
    if (state.default)
      pairs.set("default", "1");
    if (at)
      pairs.set("at", at);
    return "#" + pairs.toString();
  }

  function store(state, at) {
    history.replaceState(null, "", hashOf(state, at));
  }

  // ---- going to a row ----

  // Opens what unfolds below it. A row that the filters leave out brings all rows back.
  function goTo(id) {
    const target = id && byId(id);
    if (!target)
      return;
    if (target.closest("[hidden]")) {
      fillForm(new URLSearchParams());
      store(apply(), id);
    }
    const details = target.matches("tbody") ? target.querySelector("details") : target;
    if (details.matches("details"))
      details.open = true;
    target.scrollIntoView();
  }

  function fillForm(pairs) {
    for (const field of FIELDS)
      byId(field).value = pairs.get(field) ?? "";
    for (const field of FIELDS) // a value that is no choice
      if (byId(field).selectedIndex === -1)
        byId(field).value = "";
    byId("default").checked = pairs.get("default") === "1";
  }

  function readHash() {
    const text = location.hash.slice(1);
    if (text && !text.includes("=")) {
      apply();
      return goTo(text);
    }
    const pairs = new URLSearchParams(text);
    fillForm(pairs);
    apply();
    goTo(pairs.get("at"));
  }

  byId("q").addEventListener("input", () => store(apply()));
  form.addEventListener("change", () => store(apply()));
  form.addEventListener("submit", (event) => event.preventDefault());
  form.addEventListener("reset", () => setTimeout(() => store(apply())));
  addEventListener("hashchange", readHash);

  document.addEventListener("click", (event) => {
    const link = event.target.closest("a[href^='#']");
    if (link) {
      const id = link.getAttribute("href").slice(1);
      event.preventDefault();
      history.pushState(null, "", hashOf(readForm(), id));
      goTo(id);
      return;
    }
    const row = event.target.closest(".list > tbody > tr:first-child");
    if (row && getSelection().isCollapsed)
      row.parentNode.querySelector("summary").click();
  });
  document.addEventListener("toggle", (event) => {
    const row = event.target.closest("tbody, .family");
    if (row)
      store(readForm(), event.target.open ? row.id : "");
  }, true);
  addEventListener("keydown", (event) => {
    if (event.key === "/" && !event.target.matches("input, select")) {
      event.preventDefault();
      byId("q").focus();
    }
  });

  form.hidden = false;
  readHash();
  if ("requestIdleCallback" in window) // the first search need not wait for it then
    requestIdleCallback(() => names ?? readNames());
})();

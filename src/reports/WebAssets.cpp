// How a web page looks, and the script that lets its tables sort and filter.

#include "reports/WebParts.h"

namespace vortan {

const char* const kPageStyle =
    ":root{color-scheme:light;--paper:#fff;--ink:#1a1a1a;--soft:#595959;--line:#c8c8c8;--faint:#e8e8e8;"
    "--head:#f0f1f4;--link:#0b57b0;--warn:#fdeceb;--edge:#b3261e}"
    "*{box-sizing:border-box}"
    "body{font:14px/1.45 Arial,'Liberation Sans',Helvetica,sans-serif;color:var(--ink);"
    "background:var(--paper);margin:0 auto;padding:16px;max-width:1700px;overflow-wrap:break-word}"
    "h1{font-size:1.6em;line-height:1.2;margin:.2em 0}h2{font-size:1.2em;margin:1.6em 0 .5em}"
    "a{color:var(--link)}nav a{display:inline-block;padding:.35em .8em .35em 0}"
    ".skip:not(:focus){position:absolute;left:-9999px}"
    "dl{display:grid;grid-template-columns:repeat(auto-fill,minmax(150px,1fr));gap:.5em 1.5em;margin:1em 0}"
    "dt{color:var(--soft);font-size:.9em}dd{margin:0;font-weight:bold}"
    "#problems.bad{background:var(--warn);border-left:4px solid var(--edge);padding:.1em 1em .6em}"
    ".note{color:var(--soft)}"
    ".scroll{overflow:auto;max-height:85vh;border:1px solid var(--line)}"
    "table.data,table.few{border-collapse:separate;border-spacing:0}table.data{table-layout:fixed}"
    ".data th,.data td,.few th,.few td{border-bottom:1px solid var(--faint);padding:.25em .6em;"
    "text-align:left;vertical-align:top;font-weight:normal}"
    ".few td{text-align:right}"
    ".data thead th,.few thead th{background:var(--head);font-weight:bold;border-bottom-color:var(--line)}"
    ".data thead th{position:sticky;top:0;z-index:1;vertical-align:bottom}"
    ".data th button{font:inherit;color:inherit;background:none;border:0;padding:0;text-align:inherit;"
    "cursor:pointer;width:100%}"
    ".data th button::after{content:' \\2195';color:var(--soft)}"
    ".data th[aria-sort=ascending] button::after{content:' \\2191';color:inherit}"
    ".data th[aria-sort=descending] button::after{content:' \\2193';color:inherit}"
    ".tools{display:flex;flex-wrap:wrap;gap:.4em .8em;align-items:center;margin:.5em 0}"
    ".tools input{font:inherit;color:inherit;background:var(--paper);border:1px solid var(--soft);"
    "border-radius:4px;padding:.35em .5em;width:18em;max-width:100%}"
    // Groups of rows out of sight are not laid out, which the parts of a true table would have to be.
    "@media screen{.big,.big thead,.big tbody{display:block}.big tr{display:grid}.big colgroup{display:none}"
    ".big tr[hidden]{display:none}.big tbody{content-visibility:auto;contain-intrinsic-size:auto 1400px}"
    ".big thead{position:sticky;top:0;z-index:1}}"
    ":focus-visible{outline:2px solid var(--link);outline-offset:1px}"
    "section{scroll-margin-top:8px}section.long{content-visibility:auto;contain-intrinsic-size:auto 90vh}"
    "@media(max-width:600px){body{padding:10px}.data{font-size:13px}}"
    "@media print{@page{size:A4 landscape;margin:12mm}body{padding:0;max-width:none;font-size:9pt}"
    "nav,.tools,.skip{display:none}.scroll{overflow:visible;max-height:none;border:0}"
    "table.data{width:100%!important;font-size:7.5pt}.data thead th{position:static}"
    ".data th button{display:contents}.data th "
    "button::after{content:''}thead{display:table-header-group}tr{break-inside:avoid}"
    "section.long{content-visibility:visible}"
    "*{-webkit-print-color-adjust:exact;print-color-adjust:exact}}";

const char* const kDarkPageStyle =
    ":root{color-scheme:dark;--paper:#181a1c;--ink:#e6e6e6;--soft:#a8a8a8;--line:#4a4d52;--faint:#2c2f33;"
    "--head:#25282c;--link:#8ab8ff;--warn:#3a1f1d;--edge:#ff8a80}";

const char* const kPageScript = R"js(
(function () {
"use strict";
var units = {minute: 1, hour: 60, day: 1440, week: 10080, month: 43200};
var words = new Intl.Collator(undefined, {numeric: true, sensitivity: "base"});
var unseen = /\u200b/g;

// What a cell is sorted by: a number, or a text; an empty text for nothing.
function keyOf(cell, type) {
  var given = cell.getAttribute("data-v");
  if (given !== null) return Number(given);
  var text = cell.textContent.replace(unseen, "").trim();
  if (text === "" || type === "s") return text;
  if (type === "d") {
    var d = /^(\d+)\/(\d+)\/(\d+)(?: (\d+):(\d+)(?::(\d+))? ([AP])M)?$/.exec(text);
    if (!d) return text;
    var hour = (d[4] || 0) % 12 + (d[7] === "P" ? 12 : 0);
    return (((d[3] * 12 + Number(d[1])) * 32 + Number(d[2])) * 24 + hour) * 3600 +
        (d[5] || 0) * 60 + Number(d[6] || 0);
  }
  var found = /-?\d[\d,]*(?:\.\d+)?/.exec(text);
  if (!found) return text;
  var number = Number(found[0].replace(/,/g, ""));
  if (type !== "u") return number;
  var unit = /([a-z]+?)s?$/.exec(text);
  return number * (unit && units[unit[1]] || 1);
}

// Numbers before texts, what is empty last whatever the direction.
function compare(a, b, sign) {
  if (a === "" || b === "") return (a === "") - (b === "");
  if (typeof a !== typeof b) return typeof a === "number" ? -1 : 1;
  return sign * (typeof a === "number" ? a - b : words.compare(a, b));
}

function enhance(table) {
  var bodies = Array.from(table.tBodies), texts = null;
  var told = bodies.flatMap(function (body) { return Array.from(body.rows); });
  var heads = Array.from(table.tHead.rows[0].cells), what = table.getAttribute("data-what");

  function sortBy(column) {
    var head = heads[column], was = head.getAttribute("aria-sort"), rows = told;
    var now = was === "ascending" ? "descending" : was === "descending" ? null : "ascending";
    heads.forEach(function (each) { each.removeAttribute("aria-sort"); });
    if (now) {
      head.setAttribute("aria-sort", now);
      var type = head.getAttribute("data-t"), sign = now === "ascending" ? 1 : -1;
      rows = told.map(function (row) { return {row: row, key: keyOf(row.cells[column], type)}; })
          .sort(function (a, b) { return compare(a.key, b.key, sign); })
          .map(function (each) { return each.row; });
    }
    var each = Math.ceil(rows.length / bodies.length);
    bodies.forEach(function (body, i) { body.append.apply(body, rows.slice(i * each, (i + 1) * each)); });
  }

  heads.forEach(function (head, column) {
    var button = document.createElement("button");
    button.type = "button";
    button.textContent = head.textContent;
    head.textContent = "";
    head.appendChild(button);
    button.addEventListener("click", function () { sortBy(column); });
  });

  var tools = document.createElement("div"), label = document.createElement("label");
  var input = document.createElement("input"), count = document.createElement("span");
  tools.className = "tools";
  input.type = "search";
  input.id = table.id + "-filter";
  label.htmlFor = input.id;
  label.textContent = "Filter " + what.toLowerCase();
  count.setAttribute("role", "status");
  count.textContent = told.length + " rows";

  function filter() {
    var wanted = input.value.toLowerCase().split(/\s+/).filter(Boolean), shown = 0;
    texts = texts || told.map(function (row) {
      return Array.from(row.cells, function (cell) { return cell.textContent; })
          .join("\n").replace(unseen, "").toLowerCase();
    });
    told.forEach(function (row, i) {
      var fits = wanted.every(function (word) { return texts[i].includes(word); });
      if (row.hidden === fits) row.hidden = !fits;
      shown += fits;
    });
    count.textContent = shown === told.length ? shown + " rows" : shown + " of " + told.length + " rows";
  }
  var timer = 0;
  input.addEventListener("input", function () {
    clearTimeout(timer);
    timer = setTimeout(filter, told.length > 500 ? 150 : 0);
  });
  tools.append(label, input, count);
  table.parentNode.before(tools);
}
document.querySelectorAll("table.data").forEach(enhance);

// The bars of a chart too long to tell their own dates: those of the row, from the table of tasks.
var chart = document.getElementById("chart"), tasks = document.getElementById("tasks"), rowOf = null;
function dates(row) {
  return Array.from(tasks.tHead.rows[0].cells).map(function (head, i) {
    var text = row.cells[i].textContent;
    return head.getAttribute("data-t") === "d" && text ? head.textContent + ": " + text : "";
  }).filter(Boolean).join("\n");
}
function findRows() {
  rowOf = new Map();
  tasks.querySelectorAll("tbody tr").forEach(function (row) {
    var name = row.cells[0].textContent.replace(unseen, "");
    rowOf.set(name, rowOf.has(name) ? null : row);  // tasks of two projects can share a name
  });
}
if (chart && !chart.querySelector("title")) chart.addEventListener("pointermove", function (event) {
  var band = event.target.closest(".band"), names = band && band.parentNode.parentNode.querySelector(".band");
  if (!band || !event.target.closest("svg")) return;
  if (!rowOf) findRows();
  var cell = Array.from(names.children).find(function (each) {
    var box = each.getBoundingClientRect();
    return event.clientY >= box.top && event.clientY < box.bottom;
  });
  var row = cell && cell.firstChild && rowOf.get(cell.firstChild.textContent);
  band.title = row ? cell.firstChild.textContent + "\n" + dates(row) : "";
});
})();
)js";

}  // namespace vortan

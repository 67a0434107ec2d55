#!/usr/bin/env python3
"""check_web_page.py PAGE [PICTURES]: opens a page of "vortan-cli publish" in a headless Chromium at three widths.

Counts the rows, types into the filter, sorts, looks whether markup in names stayed text and whether the page asks for
anything, and prints how long opening and scrolling take. PICTURES is a folder for a picture of each width."""
import base64
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time


class Browser:
    """Speaks with a browser over two pipes."""

    def __init__(self):
        name = next((n for n in ("chromium", "chromium-browser", "google-chrome") if shutil.which(n)), None)
        if not name:
            sys.exit("There is no Chromium here.")
        self.number, self.events = 0, []
        to_browser, self.write_end = os.pipe()
        self.read_end, from_browser = os.pipe()

        def place():
            low = [os.dup2(os.dup(fd), fd + 100) for fd in (to_browser, from_browser)]
            os.dup2(low[0], 3)
            os.dup2(low[1], 4)

        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.process = subprocess.Popen(
            [name, "--headless", "--no-sandbox", "--disable-gpu", "--remote-debugging-pipe",
             "--user-data-dir=" + self.folder.name],
            preexec_fn=place, close_fds=False, stderr=subprocess.DEVNULL)
        self.rest, self.session = b"", None
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Performance", "Runtime", "Network"):
            self.call(domain + ".enable")

    def call(self, method, **params):
        self.number += 1
        message = {"id": self.number, "method": method, "params": params}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.write_end, json.dumps(message).encode() + b"\0")
        while True:
            answer = self.receive()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(answer["error"])
                return answer["result"]

    def receive(self):
        while b"\0" not in self.rest:
            self.rest += os.read(self.read_end, 1 << 20)
        one, self.rest = self.rest.split(b"\0", 1)
        message = json.loads(one)
        if "method" in message:
            self.events.append(message)
        return message

    def wait_for(self, method):
        while not any(event["method"] == method for event in self.events):
            self.receive()

    def value(self, script):
        result = self.call("Runtime.evaluate", expression=script, awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in result:
            raise RuntimeError(result["exceptionDetails"])
        return result["result"].get("value")

    def open(self, page):
        self.events.clear()
        start = time.monotonic()
        self.call("Page.navigate", url="file://" + os.path.abspath(page))
        self.wait_for("Page.loadEventFired")
        self.value("new Promise(r => requestAnimationFrame(() => requestAnimationFrame(r)))")
        return time.monotonic() - start

    def close(self):
        self.process.terminate()
        self.process.wait()
        self.folder.cleanup()


COUNTS = """(() => { const rows = id => document.querySelectorAll('#' + id + ' tbody tr').length;
  return {tasks: rows('tasks'), people: rows('people'), loading: rows('loading'),
          bars: document.querySelectorAll('#chart title').length,
          chart: document.getElementById('chart') !== null, wide: document.documentElement.scrollWidth > innerWidth,
          strangers: document.querySelectorAll('img,iframe,object,link,form').length +
                     document.scripts.length - 1}; })()"""
# The longest wait for a frame on the way through the page, and what a filter and a sort take.
SCROLL = """(async () => { const frame = () => new Promise(r => requestAnimationFrame(r)); let longest = 0;
  const step = async act => { const t = performance.now(); act(); await frame(); await frame();
                              longest = Math.max(longest, performance.now() - t); };
  for (const box of [document.scrollingElement, ...document.querySelectorAll('.chart,.scroll')]) {
    if (box !== document.scrollingElement) await step(() => box.scrollIntoView());
    for (let i = 0; i <= 20; ++i) await step(() => { box.scrollTop = box.scrollHeight * i / 20; }); }
  return Math.round(longest); })()"""
FILTER = """(async () => { const input = document.getElementById('tasks-filter');
  const rows = [...document.querySelectorAll('#tasks tbody tr')], word = rows[rows.length - 1].cells[0].textContent;
  input.value = word; const t = performance.now(); input.dispatchEvent(new Event('input'));
  await new Promise(r => setTimeout(r, 200)); document.getElementById('tasks').offsetHeight;
  const shown = rows.filter(r => !r.hidden && r.offsetHeight > 0), took = performance.now() - t;
  const good = shown.length >= 1 && shown.length < Math.max(rows.length, 2) &&
      shown.every(r => word.split(' ').every(w => r.textContent.toLowerCase().includes(w.toLowerCase())));
  input.value = ''; input.dispatchEvent(new Event('input')); await new Promise(r => setTimeout(r, 200));
  return {good, took: Math.round(took), status: rows.every(r => !r.hidden)}; })()"""
SORT = """(() => { const head = [...document.querySelectorAll('#tasks thead th')]
      .find(h => h.textContent.startsWith('Finish')), column = head.cellIndex;
  const told = [...document.querySelectorAll('#tasks tbody tr')], t = performance.now();
  head.querySelector('button').click(); document.getElementById('tasks').offsetHeight;
  const took = performance.now() - t;
  const dates = [...document.querySelectorAll('#tasks tbody tr')].map(r => r.cells[column].textContent)
      .filter(Boolean).map(Date.parse);
  const good = dates.every((d, i) => i === 0 || dates[i - 1] <= d) &&
      head.getAttribute('aria-sort') === 'ascending';
  head.querySelector('button').click(); head.querySelector('button').click();
  return {good, took: Math.round(took),
          back: [...document.querySelectorAll('#tasks tbody tr')].every((r, i) => r === told[i])}; })()"""


HOVER = """(() => { const bar = [...document.querySelectorAll('#chart tbody svg path')]
      .find(p => /^k/.test(p.className.baseVal) && p.getAttribute('d').includes('z'));
  if (document.querySelector('#chart title')) return true;
  const name = bar.closest('tr').querySelector('p').firstChild.textContent;
  const box = bar.closest('tr').querySelector('p').getBoundingClientRect();
  bar.dispatchEvent(new PointerEvent('pointermove', {bubbles: true, clientY: box.top + 5}));
  return bar.closest('.band').title.startsWith(name + '\\nStart: '); })()"""


def main():
    page = sys.argv[1]
    browser, faults = Browser(), []
    for width in (1400, 820, 390):
        browser.call("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1,
                     mobile=False)
        opened = browser.open(page)
        counts = browser.value(COUNTS)
        requests = [e["params"]["request"]["url"] for e in browser.events
                    if e["method"] == "Network.requestWillBeSent"]
        if len(requests) != 1 or counts["strangers"] or counts["wide"] or not counts["tasks"]:
            faults.append((width, requests, counts))
        if len(sys.argv) > 2:
            shot = browser.call("Page.captureScreenshot", format="png")["data"]
            with open(f"{sys.argv[2]}/page{width}.png", "wb") as file:
                file.write(base64.b64decode(shot))
        if counts["chart"] and not browser.value(HOVER):
            faults.append((width, "a bar does not tell its dates"))
        longest, filtered, sort = browser.value(SCROLL), browser.value(FILTER), browser.value(SORT)
        if not (filtered["good"] and filtered["status"] and sort["good"] and sort["back"]):
            faults.append((width, filtered, sort))
        print(f"{width}: {counts['tasks']} tasks, {counts['people']} people, {counts['loading']} bookings, "
              f"{counts['bars']} bars with dates of their own; opened in {opened:.2f} s, longest step of scrolling {longest} ms, "
              f"filter {filtered['took']} ms, sort {sort['took']} ms")
    browser.close()
    for fault in faults:
        print("Wrong:", *fault)
    sys.exit(bool(faults))


main()

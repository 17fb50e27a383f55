# SPDX-License-Identifier: Apache-2.0
"""A headless Chromium at the other end of the W3C WebDriver protocol, which is JSON over HTTP."""
import base64
import json
import os
import re
import shutil
import subprocess
import urllib.error
import urllib.request

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # the key of an element in the protocol


class Missing(Exception):
    """There is no browser here."""


class Browser:
    def __init__(self, profile):
        driver = shutil.which("chromedriver")
        chromium = shutil.which("chromium")
        if not driver or not chromium:
            raise Missing("chromium and chromedriver are not installed")
        self.driver = subprocess.Popen([driver, "--port=0"], stdout=subprocess.PIPE, text=True,
                                       stderr=subprocess.DEVNULL)
        self.session = None
        try:
            self.server = "http://127.0.0.1:" + self._port()
            arguments = ["--headless=new", "--disable-gpu", "--disable-dev-shm-usage",
                         "--force-color-profile=srgb", f"--user-data-dir={profile}"]
            if os.geteuid() == 0:
                arguments.append("--no-sandbox")
            options = {"binary": chromium, "args": arguments}
            started = self._call("POST", "/session", {"capabilities": {"alwaysMatch": {
                "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}}})
            self.session = "/session/" + started["sessionId"]
        except Exception as error:
            self.close()
            raise Missing(f"chromium does not start: {error}") from error

    def _port(self):
        for line in self.driver.stdout:
            found = re.search(r"started successfully on port (\d+)", line)
            if found:
                return found.group(1)
        raise Missing("chromedriver ended")

    def _call(self, method, path, body=None):
        data = None if method == "GET" else json.dumps(body or {}).encode()
        request = urllib.request.Request(self.server + path, data, method=method,
                                         headers={"Content-Type": "application/json"})
        try:
            # No proxy of the environment stands between us and the driver.
            opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
            with opener.open(request, timeout=60) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(json.load(error)["value"]["message"]) from None

    def close(self):
        if self.session:
            self._call("DELETE", self.session)
        self.driver.terminate()
        self.driver.wait()
        self.driver.stdout.close()

    def open(self, path):
        self._call("POST", self.session + "/url", {"url": "about:blank"})
        self._call("POST", self.session + "/url", {"url": path.as_uri()})

    def run(self, script, *arguments):
        """What the body of a function of the page returns."""
        return self._call("POST", self.session + "/execute/sync",
                          {"script": script, "args": list(arguments)})

    def click(self, css):
        element = self._call("POST", self.session + "/element",
                             {"using": "css selector", "value": css})[ELEMENT]
        self._call("POST", f"{self.session}/element/{element}/click")

    def act(self, *actions, kind="pointer"):
        """Actions of the mouse or its wheel, at points of the window."""
        self._call("POST", self.session + "/actions", {"actions": [
            {"type": kind, "id": kind, "actions": list(actions)}]})

    def devtools(self, command, **parameters):
        return self._call("POST", self.session + "/goog/cdp/execute",
                          {"cmd": command, "params": parameters})

    def show_as(self, width, height, scale=1, dark=False, mobile=False):
        self.devtools("Emulation.setDeviceMetricsOverride", width=width, height=height,
                      deviceScaleFactor=scale, mobile=mobile)
        self.devtools("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])

    def screenshot(self, path):
        path.write_bytes(base64.b64decode(self._call("GET", self.session + "/screenshot")))

    def complaints(self):
        """Errors on the console since the last call."""
        log = self._call("POST", self.session + "/se/log", {"type": "browser"})
        return [entry["message"] for entry in log if entry["level"] == "SEVERE"]

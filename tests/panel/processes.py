"""The programs under test: simulated devices, and a gateway that serves them."""

import http.client
import json
import pathlib
import re
import signal
import subprocess
import threading
import time
import urllib.request

patience = 30


class Program:
    """A program whose output is read line by line."""

    def __init__(self, *command):
        self._process = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, bufsize=1)
        self.lines = []
        self._changed = threading.Condition()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self._process.stdout:
            with self._changed:
                self.lines.append(line.rstrip("\n"))
                self._changed.notify_all()
        with self._changed:
            self.lines.append("(the program has ended)")
            self._changed.notify_all()

    def wait_for_line(self, pattern):
        def found():
            return next((match for match in (re.search(pattern, line) for line in self.lines) if match), None)

        with self._changed:
            assert self._changed.wait_for(found, patience), f"no line with {pattern}: {self.lines[-10:]}"
            return found()

    def type(self, line):
        self._process.stdin.write(line + "\n")
        self._process.stdin.flush()

    def send(self, number):
        self._process.send_signal(number)

    def stop(self, number=signal.SIGTERM):
        self._process.send_signal(number)
        self._process.wait(patience)
        self._reader.join(patience)
        self._process.stdin.close()
        self._process.stdout.close()


class Devices:
    """Simulated devices at addresses of their own; device 1 is the first."""

    def __init__(self, build, count, network):
        self.count = count
        self._network = network
        self._program = Program(f"{build}/tools/simulator/morquil-sim", "--devices", str(count), "--address", f"127.{network}.0.1")
        self._program.wait_for_line("^listening on")

    def address(self, number):
        return f"127.{self._network}.{number // 256}.{number % 256}"

    def command(self, number, text):
        self._program.type(f"@{number} {text}" if self.count > 1 else text)

    def stop(self):
        self._program.stop()


class Gateway:
    """A gateway with a configuration of its own; `restart` keeps its port."""

    rooms = ("Studio A", "Studio B", "Playout", "OB van")

    def __init__(self, build, folder, devices, label=lambda number: f"Converter {number}",
                 room=lambda number: Gateway.rooms[number % 4]):
        self._build = build
        self._config = pathlib.Path(folder) / "gateway.toml"
        entries = [f'[[device]]\nname = "converter-{number}"\nlabel = {json.dumps(label(number))}\naddress = "{devices.address(number)}"\n'
                   f'room = "{room(number)}"\ntags = ["{"uhd" if number % 3 == 0 else "hd"}"]\n'
                   for number in range(1, devices.count + 1)]
        self._config.write_text(f'[store]\nfolder = "{folder}"\n\n' + "\n".join(entries), encoding="utf-8")
        self._port = 0
        self.start()

    def start(self):
        self._program = Program(f"{self._build}/tools/gateway/morquil-gateway", "--config", str(self._config), "--port", str(self._port))
        self.url = self._program.wait_for_line(r"^http://\S+/$").group()
        self._port = int(self.url.rstrip("/").rsplit(":", 1)[1])

    def wait_for_devices(self, count):
        deadline = time.monotonic() + patience
        while self.get("healthz")["connected"] < count:
            assert time.monotonic() < deadline, "the devices are not connected"
            threading.Event().wait(0.05)

    def get(self, path):
        with urllib.request.urlopen(self.url + path, timeout=patience) as answer:
            return json.load(answer)

    def head_of(self, path):
        """Status and headers of a file, as they go over the network."""
        connection = http.client.HTTPConnection("127.0.0.1", self._port, timeout=patience)
        connection.request("GET", path)
        answer = connection.getresponse()
        body = answer.read()
        connection.close()
        return answer.status, {name.lower(): value for name, value in answer.getheaders()}, body

    def freeze(self):
        self._program.send(signal.SIGSTOP)

    def thaw(self):
        self._program.send(signal.SIGCONT)

    def kill(self):
        self._program.stop(signal.SIGKILL)

    def stop(self):
        self._program.stop()

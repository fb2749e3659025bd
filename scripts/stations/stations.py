"""Many stations at one broker, killed at random; see scripts/stations.sh."""

import argparse
import json
import os
import random
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
from course import Course
from mqttreader import Reader

TICKS = os.sysconf("SC_CLK_TCK")
PREFIX = "plant/hall 2"
RATE = 20  # frames a second of a controller: as many as go out
BROKERS_SHARE = 0.1  # of those that are killed
# Without a new result: longer than a killed station needs to start on a busy computer, find the broker again
# (at most 30 s between two tries) and send what it has.
PATIENCE_S = 120


def free_port():
    with socket.socket() as server:
        server.bind(("127.0.0.1", 0))
        return server.getsockname()[1]


def cpu_seconds(pid):
    """User's and system's; nothing of children."""
    try:
        fields = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    except OSError:
        return 0.0
    return (int(fields[11]) + int(fields[12])) / TICKS


def memory_mb(pid):
    try:
        for line in Path(f"/proc/{pid}/status").read_text().splitlines():
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) / 1024
    except OSError:
        pass
    return 0.0


class Program:
    """A process that is started anew after it was killed; its CPU time counts on."""

    def __init__(self, command, environment, log):
        self.command, self.environment, self.log = command, environment, log
        self.before, self.kills, self.process = 0.0, 0, None
        self.start()

    def start(self):
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(self.command, env=self.environment, stdin=subprocess.DEVNULL,
                                            stdout=log, stderr=log)

    def cpu(self):
        return self.before + cpu_seconds(self.process.pid)

    def kill(self):
        self.before = self.cpu()
        self.kills += 1
        self.process.kill()
        self.process.wait()

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        try:
            self.process.wait(30)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            return False
        return self.process.returncode == 0


def start_broker(folder, port):
    path = folder / "broker.conf"
    path.write_text(f"user root\nlistener {port} 127.0.0.1\nallow_anonymous true\npersistence true\n"
                    f"persistence_location {folder}/\nautosave_interval 1\n"
                    "max_queued_messages 0\nmax_connections -1\n")
    command = ["/usr/sbin/mosquitto", "-c", str(path)]
    return Program(command, os.environ.copy(), folder / "broker.log")


def start_station(build, folder, port, number, results, period_ms):
    home = folder / f"station{number:03}"
    home.mkdir()
    environment = os.environ | {
        "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C", "XDG_DATA_HOME": str(home),
        "STATION_RESULTS": str(results), "STATION_PERIOD_MS": str(period_ms),
        "STATION_FILE": str(home / "number")}
    url = f"mqtt://127.0.0.1:{port}/{PREFIX.replace(' ', '%20')}?station=press-{number:03}"
    # A broker has a computer of its own: what it and the reader need comes first here, too.
    command = ["nice", "-n", "12", str(build / "bin/kestrel-workbench"), "--simulate", "--simulator-options",
               f"--seed {number} --rate {RATE}", "--measure", "--plugins", str(home / "none"),
               "--module", str(build / "scripts/stations/libstationresults.so"),
               "--settings", str(home / "settings.ini"), "--send", url]
    return Program(command, environment, home / "log")


def waiting(folder, number):
    """How many results a station's spool still holds."""
    lines = 0
    for spool in (folder / f"station{number:03}").glob("**/*.results"):
        try:
            taken = int(Path(f"{spool}.taken").read_text())
        except (OSError, ValueError):
            taken = 0
        lines += spool.read_bytes()[taken:].count(b"\n")
    return lines


def noted(folder, number):
    """How many results a station has written, by its own note."""
    try:
        return int((folder / f"station{number:03}" / "number").read_text().split()[0])
    except (OSError, ValueError, IndexError):
        return 0


class Ledger:
    """What the reader has got."""

    def __init__(self):
        self.lock = threading.Lock()
        self.numbers, self.results, self.messages, self.poses, self.bytes = {}, {}, 0, 0, 0
        self.by_broker = self.differing = 0

    def take(self, topic, payload, again):
        station, kind = topic.split("/")[-2:]
        with self.lock:
            self.bytes += len(payload)
            if kind == "poses":
                self.poses += 1
            elif kind == "results":
                message = json.loads(payload)
                self.messages += 1
                # A station that was killed may have had it written twice, at another "utc".
                known = message["id"] in self.results
                before = self.results.setdefault(message["id"], (station, message["result"]))
                self.differing += before != (station, message["result"])
                self.by_broker += known and again
                self.numbers.setdefault(station, set()).add(message["result"]["number"])

    def count(self):
        with self.lock:
            return sum(len(numbers) for numbers in self.numbers.values())


def disturb(stations, broker, chance):
    """Whether it was the broker."""
    victim = broker if chance.random() < BROKERS_SHARE else chance.choice(stations)
    victim.kill()
    victim.start()
    return victim is broker


def written_by_all(folder, arguments):
    return sum(noted(folder, number) for number in range(1, arguments.stations + 1))


def run(arguments, folder):
    chance = random.Random(arguments.seed)
    port = free_port()
    broker = start_broker(folder, port)
    ledger = Ledger()
    reader = Reader(port, f"{PREFIX}/#", ledger.take)
    reader.start()
    if not reader.subscribed.wait(30):
        sys.exit("the broker does not take a reader")
    each = -(-arguments.results // arguments.stations)
    # Results are to come during half of the time.
    period_ms = max(1, int(arguments.minutes * 30000 / each))
    begin = time.monotonic()
    stations = []
    for number in range(1, arguments.stations + 1):
        stations.append(start_station(arguments.build, folder, port, number, each, period_ms))
        time.sleep(0.1)
    wanted = each * arguments.stations
    most_memory = [0.0] * len(stations)
    broker_memory = 0.0
    course = Course()
    came, latest = 0, begin
    while came < wanted and (time.monotonic() - begin < arguments.minutes * 60 or
                             time.monotonic() - latest < PATIENCE_S):
        time.sleep(1)
        course.add(time.monotonic() - begin, written_by_all(folder, arguments), ledger.count(), ledger.poses)
        if ledger.count() > came:
            came, latest = ledger.count(), time.monotonic()
        for number, station in enumerate(stations):
            most_memory[number] = max(most_memory[number], memory_mb(station.process.pid))
        broker_memory = max(broker_memory, memory_mb(broker.process.pid))
        if not arguments.calm and ledger.count() < wanted * 0.9 and chance.random() < 0.25:
            is_broker = disturb(stations, broker, chance)
            course.add_kill(time.monotonic() - begin, is_broker)
    seconds = time.monotonic() - begin
    cpu = [station.cpu() for station in stations]
    broker_cpu = broker.cpu()
    orderly = sum(station.end() for station in stations)
    written = written_by_all(folder, arguments)
    lost = written - ledger.count()
    kept = sum(waiting(folder, number) for number in range(1, arguments.stations + 1))
    print(f"{len(stations)} stations, {seconds:.0f} s, seed {arguments.seed}; killed: stations "
          f"{sum(station.kills for station in stations)} times, the broker {broker.kills} times")
    if written < wanted:
        print(f"the time was over when {wanted - written} results were still to be written")
    print(f"results: {written} written, {lost} did not come ({kept} are kept at stations for their next start); {ledger.messages} messages with "
          f"{len(ledger.results)} ids, so {ledger.messages - len(ledger.results)} came again with their id, "
          f"{ledger.by_broker} of them by the broker; the reader connected {reader.connections} times")
    print(f"poses: {ledger.poses} messages; all payloads {ledger.bytes / 1e6:.1f} MB")
    print(f"broker: {broker_cpu / seconds:.1%} of a CPU, at most {broker_memory:.0f} MB")
    print(f"station: {sum(cpu) / len(cpu) / seconds:.1%} of a CPU, at most {max(most_memory):.0f} MB "
          "(without its simulated controller)")
    print(f"orderly ends: {orderly} of {len(stations)}")
    reader.ending = True
    broker.end()
    if arguments.picture:
        course.draw(arguments.picture, len(stations))
    if ledger.differing:
        print(f"{ledger.differing} messages had the id of another result")
    doubled = len(ledger.results) - ledger.count()
    if doubled:
        print(f"{doubled} results came with more than one id")
    return lost == 0 and doubled == 0 and written == wanted and orderly == len(stations) and not ledger.differing


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--stations", type=int, default=50)
    parser.add_argument("--results", type=int, default=20000)
    parser.add_argument("--minutes", type=float, default=30)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    parser.add_argument("--calm", action="store_true")
    parser.add_argument("--picture", type=Path)
    arguments = parser.parse_args()
    arguments.build = arguments.build.resolve()
    # In memory: each station has a disk of its own to wait for, and here all would wait for one.
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(prefix="stations.", dir=memory) as folder:
        sys.exit(0 if run(arguments, Path(folder)) else 1)


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""load.py COMMAND [REQUESTS]: puts the sandbox that COMMAND, the path of `ovinta`, runs under load and
prints what it took. First 500 clients ask at once, each on a connection of its own that is opened
before the first of them asks; then 50 clients make 100,000 requests on connections that are kept, half
of them for a customer's orders, half to report a position. Ends in 1 when one is not answered by 200.
"""
import json
import pathlib
import re
import selectors
import os
import socket
import subprocess
import sys
import time

AT_ONCE = 500
CLIENTS = 50
HEAD = ("App-Version: 1.0\r\nSDK-Version: 1.0\r\nSDK-Platform: ios\r\nContent-Type: application/json\r\n"
        "Accept: application/json\r\n")


def request(method, path, data=None, token=None):
    """The bytes of a request."""
    body = json.dumps({"data": data}) if data is not None else ""
    authorization = f'Authorization: Token token="{token}"\r\n' if token else ""
    return (f"{method} {path} HTTP/1.1\r\nHost: 127.0.0.1\r\n{HEAD}{authorization}"
            f"Content-Length: {len(body)}\r\n\r\n{body}").encode()


class Client:
    """One connection, whose requests follow each other."""

    def __init__(self, port):
        self.socket = socket.create_connection(("127.0.0.1", port))
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.received = b""

    def ask(self, message):
        self.socket.sendall(message)

    def take(self):
        """The body of the answer once it is whole, else None; reads what has come."""
        part = self.socket.recv(1 << 16)
        self.received += part
        head, gap, body = self.received.partition(b"\r\n\r\n")
        if not part or (gap and not head.startswith(b"HTTP/1.1 200")):
            sys.exit(f"not answered by 200: {self.received[:200]!r}")
        length = re.search(rb"(?i)content-length: (\d+)", head) if gap else None
        if not length or len(body) < int(length[1]):
            return None
        self.received = body[int(length[1]):]
        return body


def run(clients, messages, count):
    """Has the clients make so many requests, each client one at a time; the message of the n-th is
    messages[n % len(messages)]. Answers the time that it took in seconds."""
    selector = selectors.DefaultSelector()
    for client in clients:
        selector.register(client.socket, selectors.EVENT_READ, client)
    begin = time.monotonic()
    for sent, client in enumerate(clients):
        client.ask(messages[sent % len(messages)])
    sent, answered = len(clients), 0
    while answered < count:
        ready = selector.select(timeout=60)
        if not ready:
            sys.exit(f"{count - answered} of {count} requests were not answered")
        for key, _ in ready:
            if key.data.take() is None:
                continue
            answered += 1
            if sent < count:
                key.data.ask(messages[sent % len(messages)])
                sent += 1
    selector.close()
    return time.monotonic() - begin


class Sandbox:
    """A sandbox of its own process."""

    def __init__(self, command):
        self.process = subprocess.Popen([command, "sandbox", "--port", "0"], text=True,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        for line in self.process.stdout:
            if found := re.search(r"http://127\.0\.0\.1:(\d+)", line):
                self.port = int(found[1])
                return
        sys.exit("the sandbox does not start")

    def memory(self, key):
        """Its memory in MiB: VmRSS at present, VmHWM at most."""
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text(encoding="ascii")
        return int(re.search(rf"{key}:\s+(\d+)", status)[1]) / 1024

    def processor_time(self):
        """The seconds of processors that it has taken."""
        stat = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text(encoding="ascii")
        fields = stat.rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def answer(client, message):
    """The record that a single request is answered with."""
    client.ask(message)
    while (body := client.take()) is None:
        pass
    return json.loads(body)["data"]


def main(command, requests="100000"):
    """Measures and prints."""
    count = int(requests)
    sandbox = Sandbox(command)
    try:
        first = Client(sandbox.port)
        token = answer(first, request("POST", "/m/v1/customer", {
            "name": "Ann", "terms_of_service": True, "age_verification": True}))["api_token"]
        order = answer(first, request("POST", "/m/v1/orders", {
            "site_id": 42, "partner_identifier": "A-1"}, token))["id"]
        messages = [request("GET", "/m/v1/orders", token=token),
                    request("POST", "/m/v1/events", {
                        "order_id": order, "event_type": "location_update", "latitude": 40.75,
                        "longitude": -73.98, "accuracy": 5, "speed": 9.5}, token)]
        start = sandbox.memory("VmRSS")
        crowd = [Client(sandbox.port) for _ in range(AT_ONCE)]
        seconds = run(crowd, messages, AT_ONCE)
        print(f"{AT_ONCE} clients at once: all answered in {seconds * 1000:.0f} ms, "
              f"at most {sandbox.memory('VmHWM'):.1f} MiB")
        for client in crowd:
            client.socket.close()
        before = sandbox.processor_time()
        seconds = run([Client(sandbox.port) for _ in range(CLIENTS)], messages, count)
        spent = sandbox.processor_time() - before
        print(f"{count} requests of {CLIENTS} clients: {count / seconds:.0f} a second, "
              f"{spent / count * 1e6:.0f} us of a processor each")
        print(f"memory: {start:.1f} MiB at the start, {sandbox.memory('VmRSS'):.1f} MiB after, "
              f"{sandbox.memory('VmHWM'):.1f} MiB at most")
    finally:
        sandbox.process.terminate()
        sandbox.process.wait()


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    main(*sys.argv[1:])

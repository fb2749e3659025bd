"""Somebody at an MQTT broker who reads all below a prefix: MQTT 3.1.1, QoS 1, a session that the broker
keeps while he is away. Nothing but the standard library, so that it is not the sender's library that
judges what was sent."""

import socket
import struct
import threading
import time

CONNACK, PUBLISH, PUBACK, SUBACK = 2, 3, 4, 9


def field(data):
    return struct.pack(">H", len(data)) + data


def packet(kind, flags, body):
    length, size = b"", len(body)
    while True:
        size, digit = divmod(size, 128)
        length += bytes([digit | (128 if size else 0)])
        if not size:
            return bytes([kind << 4 | flags]) + length + body


class Reader(threading.Thread):
    """Calls `take(topic, payload, again)` on a thread of its own for each message, in their order; `again`: the
    broker says that it may have sent it before."""

    def __init__(self, port, topic, take):
        super().__init__(daemon=True)
        self.port, self.topic, self.take = port, topic.encode(), take
        self.subscribed = threading.Event()
        self.ending = False
        self.connections = 0

    def run(self):
        while not self.ending:
            try:
                self.talk()
            except (OSError, EOFError):
                pass
            self.subscribed.clear()
            time.sleep(0.05)

    def talk(self):
        with socket.create_connection(("127.0.0.1", self.port), 5) as self.socket:
            self.socket.settimeout(20)
            keep_alive = 10
            head = field(b"MQTT") + bytes([4, 0]) + struct.pack(">H", keep_alive)
            self.socket.sendall(packet(1, 0, head + field(b"reader")))
            self.socket.sendall(packet(8, 2, struct.pack(">H", 1) + field(self.topic) + b"\x01"))
            spoken = time.monotonic()
            while not self.ending:
                kind, flags, body = self.receive()
                if kind == CONNACK and body[1] != 0:
                    raise OSError("refused")
                if kind == SUBACK:
                    self.subscribed.set()
                    self.connections += 1
                if kind == PUBLISH:
                    self.publish(flags, body)
                if time.monotonic() - spoken > keep_alive / 2:
                    self.socket.sendall(packet(12, 0, b""))
                    spoken = time.monotonic()

    def publish(self, flags, body):
        size = struct.unpack(">H", body[:2])[0]
        topic, rest = body[2:2 + size].decode(), body[2 + size:]
        if flags & 6:
            identifier, rest = rest[:2], rest[2:]
        self.take(topic, rest, bool(flags & 8))
        if flags & 6:
            self.socket.sendall(packet(PUBACK, 0, identifier))

    def exactly(self, size):
        data = b""
        while len(data) < size:
            piece = self.socket.recv(size - len(data))
            if not piece:
                raise EOFError
            data += piece
        return data

    def receive(self):
        first = self.exactly(1)[0]
        size, shift = 0, 0
        while True:
            digit = self.exactly(1)[0]
            size |= (digit & 127) << shift
            shift += 7
            if digit < 128:
                return first >> 4, first & 15, self.exactly(size)

"""An object store with the S3 interface: OpenStack Swift, all of its servers in one process and with
one copy of each object.

Usage: python3 -m scaling.objectstore ADDRESS PORT FOLDER. Key and secret are in keys.py.
"""

import logging
import sys
from pathlib import Path

import eventlet

eventlet.monkey_patch()

# pylint: disable=wrong-import-position
from eventlet import wsgi  # noqa: E402  (after everything waits in green threads)
from swift.common import storage_policy, utils  # noqa: E402
from swift.common.http_protocol import SwiftHttpProtocol  # noqa: E402
from swift.common.ring import RingBuilder  # noqa: E402
from swift.common.wsgi import loadapp  # noqa: E402

from .events import emit  # noqa: E402
from .keys import SECRET  # noqa: E402

SERVERS = "account", "container", "object"
PARTS = 0  # as a power of two: there is one disk

SERVER = """[DEFAULT]
devices = {folder}
swift_dir = {folder}
mount_check = false
workers = 0
log_level = ERROR
[pipeline:main]
pipeline = server
[app:server]
use = egg:swift#{server}
"""
PROXY = """[DEFAULT]
swift_dir = {folder}
log_level = ERROR
[pipeline:main]
pipeline = memory s3api tempauth proxy-server
[filter:memory]
paste.filter_factory = scaling.objectstore:make_memory
[filter:s3api]
use = egg:swift#s3api
force_swift_request_proxy_log = false
[filter:tempauth]
use = egg:swift#tempauth
user_lab_camera = {secret} .admin
[app:proxy-server]
use = egg:swift#proxy
account_autocreate = true
"""


class Memory:
    """What Swift otherwise keeps in memcached: a few entries, which need no server here."""

    def __init__(self):
        self.entries = {}

    def get(self, key, **_):
        """The entry, or None."""
        return self.entries.get(key)

    def set(self, key, value, **_):
        """Keeps an entry."""
        self.entries[key] = value

    def incr(self, key, delta=1, **_):
        """Adds to an entry."""
        self.entries[key] = self.entries.get(key, 0) + delta
        return self.entries[key]

    def delete(self, key, **_):
        """Removes an entry."""
        self.entries.pop(key, None)


def make_memory(_, **__):
    """The filter that puts the memory where Swift expects memcached."""
    memory = Memory()

    def around(app):
        def call(environment, start_response):
            environment["swift.cache"] = memory
            return app(environment, start_response)
        return call
    return around


def serve(listener, text, path):
    """Starts a server from its configuration."""
    path.write_text(text, encoding="utf-8")
    app = loadapp(str(path), global_conf={"log_name": path.stem})
    eventlet.spawn(wsgi.server, listener, app, log=logging.getLogger("silent"), log_output=False,
                   protocol=SwiftHttpProtocol)


def run(address, port, folder):
    """Serves until it is killed."""
    (folder / "swift.conf").write_text("[swift-hash]\nswift_hash_path_suffix = scale\n",
                                       encoding="ascii")
    utils.SWIFT_CONF_FILE = storage_policy.SWIFT_CONF_FILE = str(folder / "swift.conf")
    utils.validate_hash_conf()
    (folder / "disk").mkdir(exist_ok=True)  # it may have been there before
    for server in SERVERS:
        listener = eventlet.listen(("127.0.0.1", 0))
        ring = RingBuilder(PARTS, 1, 0)
        ring.add_dev({"id": 0, "region": 1, "zone": 1, "weight": 1, "device": "disk",
                      "ip": "127.0.0.1", "port": listener.getsockname()[1]})
        ring.rebalance()
        ring.get_ring().save(str(folder / f"{server}.ring.gz"))
        serve(listener, SERVER.format(folder=folder, server=server), folder / f"{server}.conf")
    listener = eventlet.listen((address, port))
    serve(listener, PROXY.format(folder=folder, secret=SECRET), folder / "proxy.conf")
    emit("ready", port=listener.getsockname()[1])
    while True:
        eventlet.sleep(60)


if __name__ == "__main__":
    logging.basicConfig(level=logging.ERROR)
    run(sys.argv[1], int(sys.argv[2]), Path(sys.argv[3]))

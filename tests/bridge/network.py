#!/usr/bin/env python3
"""network.py: runs a program in a network of its own, in which nothing but its own cameras is.

    network.py PROGRAM ARGUMENT...

The network has the addresses 127.0.0.1 to 127.0.0.4, one for each camera: GigE Vision has one fixed port. Root may make
such a network, and so may others where the system lets them have user namespaces. Elsewhere the program runs on the
machine's own 127.0.0.1, one program at a time, with KEL_SHARED_NETWORK set; it leaves out what needs several cameras.

The program takes this process's place: it has its number, ends with what started it, and its result is the result.
"""
import ctypes
import fcntl
import os
import signal
import subprocess
import sys
import tempfile

OWN_NETWORKS = (["unshare", "--net"], ["unshare", "--user", "--map-root-user", "--net"])
ADDRESSES = ["127.0.0.2", "127.0.0.3", "127.0.0.4"]
INSIDE = "--inside"
PR_SET_PDEATHSIG = 1


def succeeds(command):
    try:
        return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False).returncode == 0
    except FileNotFoundError:
        return False


def run_inside(program):
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    for address in ADDRESSES:
        subprocess.run(["ip", "address", "add", address + "/8", "dev", "lo"], check=True)
    os.execvp(program[0], program)


def open_lock(path):
    # Without O_CREAT if it is there: the system may refuse to open a file of another user that way.
    try:
        return os.open(path, os.O_RDONLY)
    except FileNotFoundError:
        return os.open(path, os.O_RDONLY | os.O_CREAT, 0o644)


def run_on_the_machines_own(program):
    print("network.py: no network of its own may be made here: tests that need several cameras are left out", flush=True)
    lock = open_lock(os.path.join(tempfile.gettempdir(), "kel-camera-network.lock"))
    fcntl.flock(lock, fcntl.LOCK_EX)
    # The program keeps the lock until it ends.
    os.set_inheritable(lock, True)
    os.environ["KEL_SHARED_NETWORK"] = "1"
    os.execvp(program[0], program)


def main(arguments):
    if not arguments:
        sys.exit(__doc__)
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)
    if arguments[0] == INSIDE:
        run_inside(arguments[1:])
    for way in OWN_NETWORKS:
        if not os.environ.get("KEL_SHARED_NETWORK") and succeeds([*way, "ip", "link", "set", "lo", "up"]):
            os.execvp(way[0], [*way, sys.executable, "-B", __file__, INSIDE, *arguments])
    run_on_the_machines_own(arguments)


if __name__ == "__main__":
    main(sys.argv[1:])

#!/usr/bin/env python3
"""with_camera.py: runs a program while a camera is on the network.

    with_camera.py CAMERA [ARGUMENT...] -- PROGRAM [ARGUMENT...]

CAMERA is a program that is a GigE Vision camera on this machine, such as `arv-fake-gv-camera-0.8 -i lo`. The other program
begins when the camera listens, and its result is the result. The camera ends with this process, whatever ends that.
"""
import ctypes
import signal
import subprocess
import sys
import time

CONTROL_PORT = 3956
DEADLINE_S = 10
PR_SET_PDEATHSIG = 1


def die_with_parent():
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


def listens():
    with open("/proc/net/udp", encoding="ascii") as table:
        return any(f":{CONTROL_PORT:04X} " in line.split(":", 1)[1] for line in table.readlines()[1:])


def main(arguments):
    if "--" not in arguments:
        sys.exit(__doc__)
    divider = arguments.index("--")
    with subprocess.Popen(
        arguments[:divider], preexec_fn=die_with_parent, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL
    ) as camera:
        try:
            deadline = time.monotonic() + DEADLINE_S
            while not listens():
                if camera.poll() is not None or time.monotonic() > deadline:
                    sys.exit("with_camera.py: the camera does not start: " + " ".join(arguments[:divider]))
                time.sleep(0.01)
            return subprocess.run(arguments[divider + 1:], preexec_fn=die_with_parent, check=False).returncode
        finally:
            camera.kill()


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

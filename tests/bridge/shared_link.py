"""shared_link.py: cameras that share one link to the host, each on a cable of its own to a switch.

To be used in a network of its own (network.py). The cameras and the switch have networks of their own; each cable is a pair of
virtual Ethernet devices with an MTU of 9000:

    camera 10.0.0.1 --- port1 \
                               switch  uplink === nic  host 10.0.0.100
    camera 10.0.0.2 --- port2 /

The cameras keep the pause between packets that the host sets, as on gigabit Ethernet. The uplink has the link's capacity: a
token bucket as large as the switch's buffer, so that a packet is lost when the buffer of a switch would be full. It needs no
queue: its losses do not depend on when this machine's processors have time.
"""
import json
import os
import pathlib
import subprocess
import tempfile

# What gigabit Ethernet carries of the cameras' bytes, as the rest of this project reckons.
CAPACITY = 115_000_000
# Shared by the ports of a small switch.
BUFFER_BYTES = 131_072
# Of an IP packet; it has 36 bytes of headers in it, and the switch sees 14 of Ethernet before it.
PACKET_BYTES = 8228
HEADER_BYTES = 36
ETHERNET_BYTES = 14
# Of the bucket: two packets, for the one that comes in between.
QUEUE_BYTES = 2 * (PACKET_BYTES + ETHERNET_BYTES)
MTU = "9000"
HOST = "10.0.0.100"
ADDITIONS = [str(pathlib.Path(__file__).resolve().parent / "camera" / name)
             for name in ("additions.xml", "waits_for_triggers.xml")]  # fmt: skip
PATH = os.environ.get("PATH", "") + os.pathsep + "/usr/sbin" + os.pathsep + "/sbin"


class Unavailable(Exception):
    """What this system lacks or refuses."""


def run(*command):
    try:
        done = subprocess.run(command, capture_output=True, text=True, check=False, env={**os.environ, "PATH": PATH})
    except FileNotFoundError as failure:
        raise Unavailable(f"there is no program {failure.filename}") from failure
    if done.returncode != 0:
        raise Unavailable(f"{' '.join(command)}: {done.stderr.strip() or done.returncode}")
    return done.stdout


class Network:
    """A network namespace. It ends when its process's input does."""

    def __init__(self):
        self.holder = subprocess.Popen(["unshare", "--net", "sh", "-c", "echo; exec cat"], stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)  # fmt: skip
        if self.holder.stdout.readline() != b"\n":
            raise Unavailable("unshare --net is refused")
        self.enter = ["nsenter", "--net", "--target", str(self.holder.pid)]
        self.run("ip", "link", "set", "lo", "up")

    def run(self, *command):
        return run(*self.enter, *command)

    def close(self):
        self.holder.communicate()


class SharedLink:
    """With cameras 1 to n on it, of the serial numbers 0001 to 000n. Raises Unavailable."""

    def __init__(self, camera_program, cameras=2, capacity=CAPACITY):
        if os.environ.get("KEL_SHARED_NETWORK"):
            raise Unavailable("no network of its own may be made here")
        self.open = []
        try:
            self.build_switch(capacity)
            for number in range(1, cameras + 1):
                self.plug_in(camera_program, number)
        except BaseException:
            self.close()
            raise

    def build_switch(self, capacity):
        self.switch = self.opened(Network())
        self.switch.run("ip", "link", "add", "switch", "type", "bridge")
        self.switch.run("ip", "link", "set", "switch", "up")
        # The host's end is moved to where this process is.
        self.lay_cable("uplink", "nic", os.getpid())
        run("ip", "address", "add", f"{HOST}/24", "broadcast", "10.0.0.255", "dev", "nic")
        run("ip", "link", "set", "nic", "up")
        on_wire = capacity * (PACKET_BYTES + ETHERNET_BYTES) // (PACKET_BYTES - HEADER_BYTES)
        self.switch.run("tc", "qdisc", "add", "dev", "uplink", "root", "tbf", "rate", f"{on_wire}bps", "burst",
                        str(BUFFER_BYTES), "limit", str(QUEUE_BYTES))  # fmt: skip

    def lay_cable(self, port, peer, network_of):
        self.switch.run("ip", "link", "add", port, "mtu", MTU, "type", "veth", "peer", "name", peer, "mtu", MTU, "netns",
                        str(network_of))  # fmt: skip
        self.switch.run("ip", "link", "set", port, "master", "switch")
        self.switch.run("ip", "link", "set", port, "up")

    def plug_in(self, program, number):
        network = self.opened(Network())
        self.lay_cable(f"port{number}", "eth0", network.holder.pid)
        address = f"10.0.0.{number}"
        network.run("ip", "address", "add", f"{address}/24", "broadcast", "10.0.0.255", "dev", "eth0")
        network.run("ip", "link", "set", "eth0", "up")
        self.opened(Camera(network, [
            program, "--address", address, "--serial", f"000{number}", "--mac", str(0x000F31000000 + number),
            "--additions", *ADDITIONS, "--packet-bytes", str(PACKET_BYTES), "--paced"]))  # fmt: skip

    def opened(self, part):
        self.open.append(part)
        return part

    def lost_packets(self):
        """How many the switch has thrown away."""
        statistics, = json.loads(self.switch.run("tc", "-s", "-j", "qdisc", "show", "dev", "uplink"))
        return statistics["drops"]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        while self.open:
            self.open.pop().close()


class Camera:
    def __init__(self, network, command):
        self.process = subprocess.Popen([*network.enter, *command], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        if self.process.stdout.readline() != b"ready\n":
            raise RuntimeError("the camera does not start: " + " ".join(command))

    def close(self):
        self.process.communicate()


class Kelcam:
    """kelcam snap with the first cameras of a link, in single pictures, 2048 wide."""

    DEADLINE_S = 200
    FAILED = 1

    def __init__(self, program, height=2048, keys=""):
        self.program = program
        # Of each profile, in lines.
        self.keys = f"AOIHEIGHT={height}\n{keys}"

    def snap(self, cameras, images, interval_s, link):
        """The document that kelcam prints. The pictures are thrown away."""
        with tempfile.TemporaryDirectory() as folder:
            command = [self.program, "--vimbac", "aravis", "--json", "--quiet", "snap", "-n", str(images), "--interval",
                       str(interval_s), "-o", f"{folder}/%c-%d.pgm"] + (["--link"] if link else [])  # fmt: skip
            for number in range(1, cameras + 1):
                profile = pathlib.Path(folder, f"camera{number}.ini")
                profile.write_text(f"API=Vimba\nInit.Method=Serial\nSerial.Number=000{number}\n{self.keys}",
                                   encoding="ascii")  # fmt: skip
                command += ["--profile", str(profile)]
            return self.document(command, pathlib.Path(folder))

    def document(self, command, folder):
        output, errors = folder / "output", folder / "errors"
        with open(output, "wb") as to, open(errors, "wb") as errors_to:
            with subprocess.Popen(command, stdout=to, stderr=errors_to) as process:
                for _ in range(self.DEADLINE_S):
                    try:
                        process.wait(timeout=1)
                        break
                    except subprocess.TimeoutExpired:
                        # They would be gigabytes.
                        for picture in folder.glob("*.pgm"):
                            picture.unlink(missing_ok=True)
                else:
                    process.kill()
        if process.returncode not in (0, self.FAILED):
            raise RuntimeError(f"kelcam ends with {process.returncode}: {errors.read_text()[-1000:]}")
        return json.loads(output.read_text())


def failed(camera):
    """The numbers of the pictures of one camera that failed, each with its code."""
    return {image["number"]: image["error"]["code"] for image in camera["images"] if "error" in image}

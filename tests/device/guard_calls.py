"""System calls as a build makes them, each refusal beside what is allowed, so that a broken set-up does not look like a
wall. Prints what the filter does not answer as it should, then "done"."""

import ctypes
import errno
import os
import platform
import resource
import socket
import threading

libc = ctypes.CDLL(None, use_errno=True)
SOCKET, UNSHARE, PRCTL = (41, 272, 157) if platform.machine() == "x86_64" else (198, 97, 167)
NEW_MOUNTS = 0x20000


def expect(what, answer, call, *arguments):
    ctypes.set_errno(0)
    failed = libc.syscall(*(ctypes.c_long(word) for word in (call, *arguments, 0, 0, 0))) < 0
    if (ctypes.get_errno() if failed else 0) != answer:
        print(what, call, arguments, os.strerror(ctypes.get_errno()))


# The kernel looks at the low half only. Besides AF_UNIX: keys, netlink, packets, Bluetooth, ciphers, vsock, XDP.
for family in (1, 1 | 1 << 32, 15, 16, 17, 31, 38, 40, 44):
    expect("a socket", errno.EAFNOSUPPORT, SOCKET, family, socket.SOCK_STREAM)
for family in (socket.AF_INET, socket.AF_INET6):
    expect("a socket of the internet", 0, SOCKET, family, socket.SOCK_STREAM)
for kind in range(16):
    try:
        socket.socketpair(socket.AF_UNIX, kind | socket.SOCK_CLOEXEC)
        answer = 0
    except OSError as refused:
        answer = refused.errno
    if answer != (0 if kind in (socket.SOCK_STREAM, socket.SOCK_SEQPACKET) else errno.EAFNOSUPPORT):
        print("a pair of sockets", kind, answer)
# Libraries fall back to older ways: fsopen, open_tree, move_mount, mount_setattr, clone3, io_uring, and what is newer than
# the filter.
for number in (430, 428, 429, 442, 435, 425, 426, 451, 462, 4000):
    expect("a newer call", errno.ENOSYS, number)
expect("a namespace", errno.EPERM, UNSHARE, NEW_MOUNTS)
expect("a wrong argument", errno.EINVAL, PRCTL, 1000000)
resource.prlimit(os.getpid(), resource.RLIMIT_FSIZE)
thread = threading.Thread()
thread.start()
thread.join()
print("done")

// A network of the test's own, with nothing in it but loopback: the camera's port is free there, whatever
// else runs on the machine, and what asks every network reaches nobody.
#ifndef ORLUNE_TESTS_ARAVIS_OWNNETWORK_H
#define ORLUNE_TESTS_ARAVIS_OWNNETWORK_H

#include <fstream>

#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

// False when the system allows no such thing; the test then shares the machine's loopback.
inline bool enterOwnNetwork()
{
    const auto user = getuid();
    const auto group = getgid();
    if (unshare(CLONE_NEWNET) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
            return false;
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
        std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
    }
    ifreq loopback{{"lo"}, {}};
    loopback.ifr_flags = IFF_UP;
    const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
    const bool up = ioctl(socket, SIOCSIFFLAGS, &loopback) == 0;
    close(socket);
    return up;
}

// Entered before anything else, for the process and all that it starts.
inline const bool kOwnNetwork = enterOwnNetwork();

#endif

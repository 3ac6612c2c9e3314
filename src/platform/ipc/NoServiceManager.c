/*
 * The two functions that libdbus's archive wants of libsystemd. It asks them for sockets that a service
 * manager hands over, which only an address of the kind "systemd:" needs, and no such address is ever
 * listened to here. Answering "none" keeps libsystemd and the six libraries behind it out of a process that
 * must start within milliseconds: loading them takes longer than everything else that a helper does before
 * its first answer.
 */

int sd_listen_fds(int unsetEnvironment);
int sd_is_socket(int descriptor, int family, int type, int isListening);

int sd_listen_fds(int unsetEnvironment)
{
    (void)unsetEnvironment;
    return 0;
}

int sd_is_socket(int descriptor, int family, int type, int isListening)
{
    (void)descriptor;
    (void)family;
    (void)type;
    (void)isListening;
    return 0;
}

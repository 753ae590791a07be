/* Loaded into every sox and ffmpeg the editor runs (through LD_PRELOAD).
 *
 * Both tools catch SIGTERM and SIGINT to end "gracefully": they close their
 * cut-off output as if it were complete and exit normally, and the editor
 * would then take half a track for a result. Refusing them a handler for
 * these two signals keeps the default action, so a tool that is terminated
 * ends by its signal, and the editor sees that it did not finish.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <signal.h>
#include <stddef.h>

static int keepsDefault(int sig) {
    return sig == SIGTERM || sig == SIGINT;
}

int sigaction(int sig, const struct sigaction* act, struct sigaction* old) {
    static int (*real)(int, const struct sigaction*, struct sigaction*);
    if (!real)
        *(void**)&real = dlsym(RTLD_NEXT, "sigaction"); /* as POSIX shows for function pointers */
    /* The old disposition is still reported; only the new one is not taken. */
    return real(sig, keepsDefault(sig) ? NULL : act, old);
}

sighandler_t signal(int sig, sighandler_t handler) {
    static sighandler_t (*real)(int, sighandler_t);
    if (!real)
        *(void**)&real = dlsym(RTLD_NEXT, "signal");
    return keepsDefault(sig) ? SIG_DFL : real(sig, handler);
}

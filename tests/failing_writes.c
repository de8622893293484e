/* Preloaded before a program: lets one write to a file fail, or ends the program there.
 *
 *   FAILING_FILE   a part of the paths that count
 *   FAILING_AT     the number of the call, from 1; 0 only counts
 *   FAILING_HOW    kill: the program ends before the call; torn: after half of it; full: no room from then
 * on; io: an input/output error this once FAILING_COUNT  a file that gets the number of calls when the
 * program ends */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>
#include <unistd.h>

static long calls;

static const char* Setting(const char* name) {
    const char* value = getenv(name);
    return value ? value : "";
}

static int Counts(const char* path) {
    const char* part = Setting("FAILING_FILE");
    return *part && strstr(path, part) != NULL;
}

static int Counts_Descriptor(int file) {
    char link[64];
    char path[4096];
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t length = readlink(link, path, sizeof path - 1);
    if (length < 0)
        return 0;
    path[length] = 0;
    return Counts(path);
}

/* The error of a call that counts; 0 for one that goes on; -1 for one that is torn. */
static int Fate(void) {
    const char* how = Setting("FAILING_HOW");
    const long at = atol(Setting("FAILING_AT"));
    ++calls;
    if (at > 0 && calls >= at && strcmp(how, "full") == 0)
        return ENOSPC;
    if (calls != at)
        return 0;
    if (strcmp(how, "kill") == 0)
        raise(SIGKILL);
    if (strcmp(how, "torn") == 0)
        return -1;
    return strcmp(how, "io") == 0 ? EIO : 0;
}

#define REAL(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

#define WRITES(result, name, parameters, file, half, whole)                                                  \
    result name parameters {                                                                                 \
        const int fate = Counts_Descriptor(file) ? Fate() : 0;                                               \
        if (fate > 0) {                                                                                      \
            errno = fate;                                                                                    \
            return -1;                                                                                       \
        }                                                                                                    \
        if (fate < 0) {                                                                                      \
            (void)!REAL(name) half;                                                                          \
            raise(SIGKILL);                                                                                  \
        }                                                                                                    \
        return REAL(name) whole;                                                                             \
    }

WRITES(ssize_t, write, (int file, const void* bytes, size_t count), file, (file, bytes, count / 2),
       (file, bytes, count))
WRITES(ssize_t, pwrite, (int file, const void* bytes, size_t count, off_t at), file,
       (file, bytes, count / 2, at), (file, bytes, count, at))
WRITES(ssize_t, pwrite64, (int file, const void* bytes, size_t count, off64_t at), file,
       (file, bytes, count / 2, at), (file, bytes, count, at))
WRITES(int, fsync, (int file), file, (file), (file))
WRITES(int, fdatasync, (int file), file, (file), (file))
WRITES(int, ftruncate, (int file, off_t length), file, (file, length), (file, length))
WRITES(int, ftruncate64, (int file, off64_t length), file, (file, length), (file, length))

int unlink(const char* path) {
    const int fate = Counts(path) ? Fate() : 0;
    if (fate > 0) {
        errno = fate;
        return -1;
    }
    if (fate < 0)
        raise(SIGKILL);
    return REAL(unlink)(path);
}

__attribute__((destructor)) static void Tell_Count(void) {
    const char* name = Setting("FAILING_COUNT");
    FILE* file = *name ? fopen(name, "w") : NULL;
    if (!file)
        return;
    fprintf(file, "%ld\n", calls);
    fclose(file);
}

/* Loaded before a program: the allocation with the number in EMBERDECK_FAIL_MALLOC fails, from 1 on. The number of those
   that were made goes to the file EMBERDECK_COUNT_MALLOC. */

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

extern void* __libc_malloc(size_t nSize);

static long s_nFailAt = -1; /* below 0: nothing is counted yet */
static long s_nCount = 0;

__attribute__((constructor)) static void Begin(void)
{
    const char* pszFailAt = getenv("EMBERDECK_FAIL_MALLOC");
    s_nFailAt = pszFailAt ? atol(pszFailAt) : 0;
}

__attribute__((destructor)) static void End(void)
{
    const char* pszFile = getenv("EMBERDECK_COUNT_MALLOC");
    const int nFile = pszFile ? open(pszFile, O_WRONLY | O_CREAT | O_TRUNC, 0600) : -1;
    if (nFile >= 0)
    {
        dprintf(nFile, "%ld", s_nCount);
        close(nFile);
    }
}

void* malloc(size_t nSize)
{
    if (s_nFailAt >= 0 && __sync_add_and_fetch(&s_nCount, 1) == s_nFailAt)
    {
        errno = ENOMEM;
        return NULL;
    }
    return __libc_malloc(nSize);
}

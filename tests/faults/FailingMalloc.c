/* Loaded before a program: the allocation with the number in EMBERDECK_FAIL_MALLOC fails, counted from 1 in its main
   function on. The number of those that were made goes to the file EMBERDECK_COUNT_MALLOC. */

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

typedef int (*PFNMain)(int, char**, char**);
typedef int (*PFNStart)(PFNMain, int, char**, void (*)(void), void (*)(void), void (*)(void), void*);

void* __libc_malloc(size_t nSize);
int __libc_start_main(PFNMain pfnMain, int argc, char** argv, void (*pfnInit)(void), void (*pfnFini)(void),
                      void (*pfnEnd)(void), void* pStackEnd);

static PFNMain s_pfnMain;
static long s_nFailAt = 0;
static long s_nCount = -1; /* below 0: not in the main function yet */

static int Main(int argc, char** argv, char** envp)
{
    const char* pszFailAt = getenv("EMBERDECK_FAIL_MALLOC");
    s_nFailAt = pszFailAt ? atol(pszFailAt) : 0;
    s_nCount = 0;
    return s_pfnMain(argc, argv, envp);
}

int __libc_start_main(PFNMain pfnMain, int argc, char** argv, void (*pfnInit)(void), void (*pfnFini)(void),
                      void (*pfnEnd)(void), void* pStackEnd)
{
    union
    {
        void* pSymbol;
        PFNStart pfnStart;
    } next = {dlsym(RTLD_NEXT, "__libc_start_main")};
    s_pfnMain = pfnMain;
    return next.pfnStart(Main, argc, argv, pfnInit, pfnFini, pfnEnd, pStackEnd);
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
    if (s_nCount >= 0 && __sync_add_and_fetch(&s_nCount, 1) == s_nFailAt)
    {
        errno = ENOMEM;
        return NULL;
    }
    return __libc_malloc(nSize);
}

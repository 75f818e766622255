/* A host built only from the installed header and library. */
#include <lumivex/blitters.h>
#include <lumivex/lumivex.h>
#include <stdio.h>
#include <stdlib.h>

int main(void)
{
    /* An old shell version is refused (the alert goes to standard error without a desktop). */
    if (LVHandshake(LUMIVEX_SHELL_VERSION - 1, "3.0")) return 1;
    if (!LVHandshake(LUMIVEX_SHELL_VERSION, LUMIVEX_VERSION_TEXT)) return 2;
    BlitterRecord *table = BuildBlitterTable();
    if (!table) return 3;
    int rows = 0;
    while (table[rows].size) rows++;
    free(table);
    printf("rows %d record %zu\n", rows, sizeof(KSConfigParameters));
    return rows == 105 && sizeof(KSConfigParameters) == 520 ? 0 : 4;
}

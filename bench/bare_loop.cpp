// What every reader of files pays for: opens, reads and closes each file named, up to the size of a
// bank. The measure for cli_bench.sh.
#include <fcntl.h>
#include <unistd.h>

int main(int count, char **paths) {
    static char bytes[4104];
    for (int index = 1; index < count; ++index) {
        const int file = open(paths[index], O_RDONLY);
        if (file < 0 || read(file, bytes, sizeof bytes) < 0) {
            return 1;
        }
        close(file);
    }
    return 0;
}

#include "Common/StandardStreams.h"

#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

void openClosedStandardStreams()
{
    for (int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(fd, F_GETFD) != -1)
            continue;
        // open() takes the lowest free number: the one just found closed.
        const int opened = open("/dev/null", fd == STDIN_FILENO ? O_RDONLY : O_WRONLY);
        if (opened != fd && opened >= 0)
            close(opened);
    }
}

"""Runs programs one by one and measures them. A process of its own, because the peak memory of a program that Python
starts is at least that of the Python that starts it: requests and answers are lines of JSON."""

import json
import os
import resource
import signal
import sys

MOST_MEMORY = 4 << 30  # bytes: a failing check must not take the machine down


def become(program, request):
    os.setsid()
    os.chdir(request['directory'])
    resource.setrlimit(resource.RLIMIT_STACK, (request['stack'], request['stack']))
    resource.setrlimit(resource.RLIMIT_CPU, (request['most_seconds'], request['most_seconds'] + 1))
    resource.setrlimit(resource.RLIMIT_FSIZE, (8 << 30, 8 << 30))
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    output = os.open('output', os.O_WRONLY | os.O_CREAT | os.O_APPEND, 0o666)
    os.dup2(os.open('/dev/null', os.O_RDONLY), 0)
    os.dup2(output, 1)
    os.dup2(output, 2)
    os.execve(program[0], program, request['environment'])


def measure(request):
    program = request['program']
    child = os.fork()
    if child == 0:
        try:
            become(program, request)
        finally:
            os._exit(127)
    _, status, used = os.wait4(child, 0)
    return {'status': os.waitstatus_to_exitcode(status), 'seconds': used.ru_utime + used.ru_stime,
            'bytes': used.ru_maxrss << 10}


def serve():
    signal.signal(signal.SIGINT, signal.SIG_IGN)  # the other end closes the pipe
    for line in sys.stdin:
        print(json.dumps(measure(json.loads(line))), flush=True)


if __name__ == '__main__':
    serve()

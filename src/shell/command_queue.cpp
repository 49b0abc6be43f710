// The queue of posted work.
#include "shell/command_queue.h"

#include "shell/shell_window.h"

#include <deque>
#include <utility>

namespace tonewright {
namespace {

std::deque<std::function<void()>> Queue;
int RunningDepth = 0;

void WakeIfWaiting() {
    if (RunningDepth == 0 && !Queue.empty() && TheShellWindow.Wake) {
        TheShellWindow.Wake();
    }
}

} // namespace

RunningMark::RunningMark() {
    ++RunningDepth;
}

RunningMark::~RunningMark() {
    --RunningDepth;
    WakeIfWaiting();
}

bool SomethingIsRunning() {
    return RunningDepth > 0;
}

void ClearPosted() {
    Queue.clear();
}

void Post(std::function<void()> work) {
    Queue.push_back(std::move(work));
    WakeIfWaiting();
}

bool RunNextPosted() {
    if (RunningDepth > 0 || Queue.empty()) {
        return false;
    }
    const RunningMark running;
    const auto work = std::move(Queue.front());
    Queue.pop_front();
    work();
    return true;
}

} // namespace tonewright

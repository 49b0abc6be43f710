// The end of the user's session, and the system's requests to end the program.
#pragma once

namespace tonewright {

class MainWindow;

// From now on, and as long as the window lives, both count as the close of the window, without a
// question: settings and history are written and nothing else is. A session that ends says so
// beforehand and may go on after all, so that it only has them written; a request ends the program
// out of whatever dialog stands.
void FollowSessionEnd(MainWindow &window);

} // namespace tonewright

// Any Qt, also one without GLib or with QT_NO_GLIB=1: a notifier has the library's tasks run.
#include <QGuiApplication>
#include <QSocketNotifier>

#include "Pickup.h"

using namespace ovinta::platform;
using namespace std::chrono_literals;

int main(int argc, char* argv[]) {
  QGuiApplication app(argc, argv);
  if (argc != 2) fail("usage: qt BASE-URL");
  const QSocketNotifier due(valueOf(linuxos::mainTasksDescriptor()), QSocketNotifier::Read);
  QObject::connect(&due, &QSocketNotifier::activated, [] { valueOf(linuxos::runMainTasks(5ms)); });
  const Pickup pickup(argv[1], &QCoreApplication::quit);
  return QGuiApplication::exec();
}

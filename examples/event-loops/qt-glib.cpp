// A Qt whose event dispatcher is GLib's runs the main loop of the default context: there is nothing
// to do.
#include <QAbstractEventDispatcher>
#include <QGuiApplication>

#include "Pickup.h"

int main(int argc, char* argv[]) {
  QGuiApplication app(argc, argv);
  if (argc != 2) fail("usage: qt-glib BASE-URL");
  if (!QAbstractEventDispatcher::instance()->inherits("QEventDispatcherGlib")) {
    fail("This Qt does not run GLib's main loop.");
  }
  const Pickup pickup(argv[1], &QCoreApplication::quit);
  return QGuiApplication::exec();
}

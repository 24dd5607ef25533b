// GTK 4 runs the GLib main loop of the default context: there is nothing to do.
#include <gtk/gtk.h>

#include <memory>

#include "Pickup.h"

namespace {

std::unique_ptr<Pickup> pickup;

void activate(GtkApplication* app, gpointer baseURL) {
  gtk_window_present(GTK_WINDOW(gtk_application_window_new(app)));
  pickup = std::make_unique<Pickup>(static_cast<const char*>(baseURL),
                                    [app] { g_application_quit(G_APPLICATION(app)); });
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) fail("usage: gtk BASE-URL");
  GtkApplication* app = gtk_application_new("org.example.event-loops", G_APPLICATION_NON_UNIQUE);
  g_signal_connect(app, "activate", G_CALLBACK(activate), argv[1]);
  const int status = g_application_run(G_APPLICATION(app), 1, argv);
  g_object_unref(app);
  return status;
}

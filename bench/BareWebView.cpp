// The least program that shows a page: velmor-bare-web-view PAGE WIDTH HEIGHT
// What starting and memory cost at any rate, with the page drawn as the main program draws it.

#include <webkit2/webkit2.h>

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv) {
  gdk_set_allowed_backends("x11");
  gtk_init(&argc, &argv);
  if (argc != 4) {
    std::cerr << "usage: velmor-bare-web-view PAGE WIDTH HEIGHT\n";
    return 2;
  }
  auto* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window), std::atoi(argv[2]), std::atoi(argv[3]));
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);

  auto* const view = webkit_web_view_new();
  auto* const settings = webkit_web_view_get_settings(WEBKIT_WEB_VIEW(view));
  webkit_settings_set_hardware_acceleration_policy(settings,
                                                   WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
  gtk_container_add(GTK_CONTAINER(window), view);
  GFile* const file = g_file_new_for_path(argv[1]);
  gchar* const address = g_file_get_uri(file);
  webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), address);
  g_free(address);
  g_object_unref(file);

  gtk_widget_show_all(window);
  gtk_main();
}

#include "platform/WindowManager.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

#include <QGuiApplication>

namespace {

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_connection_t* x11Display() {
  const auto* const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atomOf(xcb_connection_t* display, std::string_view name) {
  const auto asked = xcb_intern_atom(display, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const Answer<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(display, asked, nullptr), std::free);
  return atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

void activateAsPanel(WId window) {
  xcb_connection_t* const display = x11Display();
  if (!display) return;
  const auto own = static_cast<xcb_window_t>(window);
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
  const auto ask = [display, root](xcb_window_t about, std::string_view wish, std::uint32_t value) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = atomOf(display, wish);
    message.data.data32[0] = value;
    xcb_send_event(display, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
  };
  constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
  constexpr std::uint32_t fromPanel = 2;
  const auto asked =
      xcb_get_property(display, 0, own, atomOf(display, "_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 0, 1);
  const Answer<xcb_get_property_reply_t> place(xcb_get_property_reply(display, asked, nullptr), std::free);
  if (place && xcb_get_property_value_length(place.get()) == sizeof(std::uint32_t)) {
    const auto desktop = *static_cast<const std::uint32_t*>(xcb_get_property_value(place.get()));
    if (desktop != everyDesktop) ask(root, "_NET_CURRENT_DESKTOP", desktop);
  }
  ask(own, "_NET_ACTIVE_WINDOW", fromPanel);
  xcb_flush(display);
}

void forgetHostOf(WId window) {
  xcb_connection_t* const display = x11Display();
  if (!display) return;
  for (const char* const property : {"WM_CLIENT_MACHINE", "_NET_WM_PID"})
    xcb_delete_property(display, static_cast<xcb_window_t>(window), atomOf(display, property));
}

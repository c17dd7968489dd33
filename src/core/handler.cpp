#include "core/handler.h"

#include <new>
#include <stdexcept>

bool RunGuarded(const std::function<void()>& body,
                const std::function<void(const AppError&)>& trap) {
  try {
    body();
    return true;
  } catch (const AppError& e) {
    trap(e);
  } catch (const std::bad_alloc&) {
    trap(AppError(7, QStringLiteral("Out of memory")));
  } catch (const std::exception& e) {
    trap(AppError(ErrNo::InternalError, QString::fromLocal8Bit(e.what())));
  }
  return false;
}

bool RunGuarded(Prompter& prompter, const std::function<void()>& body) {
  return RunGuarded(body, [&](const AppError& e) { prompter.message(AppTitle(), e.text()); });
}

void RunIgnoringErrors(const std::function<void()>& body) {
  try {
    body();
  } catch (...) {
  }
}

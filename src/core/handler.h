#pragma once

#include <functional>

#include "core/apperror.h"
#include "core/prompter.h"

// Each event handler is its own failure boundary. RunGuarded runs the body; an error ends it
// and shows the usual box ("description - number", OK only), or hands the error to the
// handler's own trap. Returns true when the body ran to its end.
bool RunGuarded(Prompter& prompter, const std::function<void()>& body);
bool RunGuarded(const std::function<void()>& body,
                const std::function<void(const AppError&)>& trap);

// For resize, row-height and simple key routines: errors are ignored.
void RunIgnoringErrors(const std::function<void()>& body);

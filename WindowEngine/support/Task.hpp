// Long work is written as tasks: coroutines that suspend while they wait, on one thread, in a tree.
//
// - A Task is lazy and awaited once; a Job is a started Task. Awaiting a Job joins it, cancelling it cancels
//   its whole tree, destroying it destroys the tree where it is suspended.
// - Every wait checks for cancellation and throws Cancelled; a `catch (...)` in a task must rethrow.
//   `shielded(task)` runs what must finish, `joinAll(jobs)` waits for all of them whatever happens.
// - requestStop(), a Setter and the end of a child resume nobody inline: whoever waited gets a turn of its
// own.
// - A lambda that is a coroutine takes parameters and captures nothing: its closure dies before the lazy body
//   runs.
// - Other threads come in through Executor::post and Completion::Setter only.
#pragma once
#include "WindowEngine/support/Completion.hpp"     // IWYU pragma: export
#include "WindowEngine/support/Job.hpp"            // IWYU pragma: export
#include "WindowEngine/support/TaskCoroutine.hpp"  // IWYU pragma: export
#include "WindowEngine/support/Wait.hpp"           // IWYU pragma: export

#pragma once

#include "modeltester.h"

#include <QList>
#include <QString>

namespace Orvane::ModelTest {

/// A model that can be checked without a console: what an integrator implements for `checkModel`.
class ModelFixture {
public:
    ModelFixture() = default;
    virtual ~ModelFixture() = default;

    /// Brings the model up, on the GUI thread: its device list, managers and controllers are installed, a
    /// device is active, and it has a screen or more. False with the reason in @p error on failure.
    virtual bool create(QString& error) = 0;
    /// Ends the model. Afterwards nothing of it is installed. Not called when a call of the model has never
    /// returned, for a thread is still in it then.
    virtual void destroy() = 0;

private:
    Q_DISABLE_COPY_MOVE(ModelFixture)
};

/// Does what an operator would do with the keys, on a thread of its own as the console does, with a tester on
/// the model: selects, toggles each flag, takes twice, cuts, matches, moves the T-Bar; makes a screen; adds,
/// selects, orders, moves, copies, removes and clears layers; stores, loads, overwrites, removes and clears
/// presets; saves; and asks for what must be refused. Requests that the model does not offer may fail; they
/// must fail as the rules say. Returns what was found; runs the event loop of the calling thread, the GUI
/// thread, meanwhile.
QList<ModelFault> checkModel(ModelFixture& fixture, ModelLimits limits = {});

/// The whole of a checking program: needs an application object of its own type to be made before. Prints
/// each fault in a line and returns the exit code: 0 without a fault, 1 with, 2 when there was no model. When
/// a call of the model has never returned it leaves the process with that code, destroying nothing.
int checkModelMain(ModelFixture& fixture, ModelLimits limits = {});

} // namespace Orvane::ModelTest

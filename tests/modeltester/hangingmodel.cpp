// Checks a model one of whose calls never returns, as a checking program of an integrator would.
#include "flawedkit.h"

#include <QCoreApplication>

using namespace std::chrono_literals;

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    Orvane::ModelTest::Test::FlawedKit model(Orvane::ModelTest::Test::Flaw::SelectionNeverReturns);
    Orvane::ModelTest::ModelLimits limits;
    limits.query = 200ms;
    limits.completion = 300ms;
    limits.removal = 300ms;
    limits.step = 1000ms;
    return checkModelMain(model, limits);
}

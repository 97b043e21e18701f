// SPDX-License-Identifier: MIT
// Observing a board: a view hears when objects are added to the model, when they change, and when they go.
// Nobody tells the view; it says what it listens to by the interfaces that it implements.
#include <kel/addedreceiver.h>
#include <kel/bulletinboard.h>
#include <kel/changedreceiver.h>
#include <kel/deletedreceiver.h>
#include <kel/receiver.h>
#include <kel/removedreceiver.h>

#include <iostream>

namespace
{
class Load : public Bulletin
{
public:
    explicit Load(const char* name) : Bulletin(name) {}

    double getForce() const { return m_force; }
    void setForce(double force)
    {
        m_force = force;
        notifyChanged();
    }

private:
    double m_force = 0;
};

class View : public Receiver,
             public AddedReceiver,
             public ChangedReceiver,
             public DeletedReceiver,
             public RemovedReceiver
{
    void added(Bulletin&, Bulletin& obj) override
    {
        std::cout << obj.getKey().getName() << " added\n";
        observe(obj); // from now on also its changes
    }

    void changed(Bulletin& what, const Bulletin&) override
    {
        std::cout << what.getKey().getName() << " changed to " << dynamic_cast<Load&>(what).getForce() << '\n';
    }

    void removed(BulletinBoard&, Bulletin& obj) override { std::cout << obj.getKey().getName() << " removed\n"; }

    void deleted(Bulletin& obj) override { std::cout << obj.getKey().getName() << " deleted\n"; }
};
} // namespace

int main()
{
    View view;
    BulletinBoard model;
    view.observe(model);

    auto* const wind = new Load("Wind");
    model.add(wind); // the board owns it now
    wind->setForce(12.5);

    model.add(new Load("Snow"));
    model.remove(*wind); // ours again
    wind->setForce(0);   // the view still observes the object itself
    Bulletin::destroy(wind, false);
} // the board destroys the snow, and the view hears of that too

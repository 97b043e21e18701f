// An application of ten lines that links the installed library.
#include <kel/kel.h>

#include <iostream>

int main()
{
    BulletinBoard board;
    board.add(new Bulletin(BulletinKey("greeting")));
    std::cout << "libkel " << KelVersion::getCurrent()->getMajor() << ": " << board.size() << " bulletin\n";
}

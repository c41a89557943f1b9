#include "fakes/FakePlatform.h"

FakePlatform &FakePlatform::system()
{
    static FakePlatform platform;
    return platform;
}

const Platform &Platform::system()
{
    return FakePlatform::system().services;
}

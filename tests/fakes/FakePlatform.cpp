#include "fakes/FakePlatform.h"

// Compiled here, and not in each test that makes one.
FakePlatform::FakePlatform() = default;
FakePlatform::~FakePlatform() = default;

#include "store/connection.h"  // deliberately upward: the layering check must refuse it

#pragma once

/// From now on an assert of the toolkit fails the running test instead of reaching the operator.
void FailOnAsserts();

#pragma once

/// The one process-wide object of class T: built at its first use, by whichever thread comes first,
/// destroyed when the process ends.
template <typename T> class KtSingleton
{
public:
    // Not inlined, because the object would come along into every library that calls: a library
    // that owns T instantiates this once, and declares it as an extern template.
    [[gnu::noinline]] static T& Instance()
    {
        static T instance;
        return instance;
    }
};

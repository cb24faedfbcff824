#pragma once

namespace tavo {

// Everything of the door runs on the thread that made the oldest living runtime. A host that calls
// `call` ("XAdView::refreshAd") on another one learns so at once, in every build: the process ends
// with a message that names the call. Left alone, it would end somewhere else, some other day.
// Without a runtime nobody knows of a main thread, and every one is right. Any thread.
void requireMainThread(const char* call);

// The calling thread is the main one from now on. Called by the runtime.
void becomeMainThread();

}  // namespace tavo

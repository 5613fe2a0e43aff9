#include "Platform/Linux/Audio/PulseAudioMicrophoneWatch.h"

namespace kestrova {

void PulseAudioMicrophoneWatch::stateChanged(pa_context *context)
{
    const pa_context_state_t state = pa_context_get_state(context);
    if (!PA_CONTEXT_IS_GOOD(state)) {
        m_search.reset();
        m_news.setCondition(MicrophoneCondition::noServer);
    }
    if (state != PA_CONTEXT_READY)
        return;

    pa_context_set_subscribe_callback(
        context,
        [](pa_context *from, pa_subscription_event_type_t, uint32_t, void *self) {
            static_cast<PulseAudioMicrophoneWatch *>(self)->look(from);
        },
        this);
    constexpr int news = PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SERVER;
    if (pa_operation *operation = pa_context_subscribe(
            context, static_cast<pa_subscription_mask_t>(news), nullptr, nullptr))
        pa_operation_unref(operation);
    look(context);
}

void PulseAudioMicrophoneWatch::look(pa_context *context)
{
    // In place of a search that is under way, which may have missed the news.
    m_search.emplace(context, [this] { m_news.setCondition(m_search->condition()); });
}

} // namespace kestrova

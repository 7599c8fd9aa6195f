import { lastLive, events, streamState } from '../model/application.js';
import { t } from '../text/text.js';
import { timeText } from '../text/times.js';
import { Component } from '../dom/component.js';
import { append, make, setText } from '../dom/element.js';
import { makeIcon, setIcon } from '../dom/icons.js';

/** Says whether what the panel shows is live, in words. */
export class StreamMark extends Component {
    #icon = makeIcon('waiting');
    #text = make('span');

    start() {
        this.setAttribute('role', 'status');
        append(this, [this.#icon, this.#text]);
        this.listenTo(events, 'state', () => this.#update());
        this.#update();
    }

    #update() {
        const state = streamState();
        document.body.dataset.stream = state;
        setIcon(this.#icon, state === 'live' ? 'live' : state === 'connecting' ? 'waiting' : 'broken');
        const since = lastLive();
        setText(this.#text, state === 'live' ? t('stream.live') : state === 'connecting' ? t('stream.connecting')
            : t('stream.lost', { time: timeText(since ?? Date.now()) }));
    }
}

customElements.define('stream-mark', StreamMark);

/** An element that takes care of what it listens to. Subclasses build their content in `start`. */
export class Component extends HTMLElement {
    /** @type {(() => void)[]} */
    #endings = [];

    connectedCallback() {
        this.start();
    }

    disconnectedCallback() {
        this.#endings.splice(0).forEach((end) => end());
    }

    start() {}

    /** @param {() => void} end called when the element leaves the page */
    whenGone(end) {
        this.#endings.push(end);
    }

    /** @param {EventTarget} target @param {string} type @param {(event: any) => void} handler */
    listenTo(target, type, handler) {
        target.addEventListener(type, handler);
        this.whenGone(() => target.removeEventListener(type, handler));
    }
}

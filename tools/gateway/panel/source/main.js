import { applyTheme } from './shell/theme.js';
import { listenForShortcuts } from './shell/shortcuts.js';
import './shell/panel_root.js';

applyTheme();
listenForShortcuts();
document.body.append(document.createElement('panel-root'));

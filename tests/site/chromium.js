// Pages in Debian's Chromium, from the disk. Whatever a page complains of, or asks of any other place, is kept.
import { readdirSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { chromium } from 'playwright-core';
import { root } from './engine.js';

export const folder = new URL('build/wasm/site/', root);
export const files = readdirSync(fileURLToPath(folder)).filter((file) => file.endsWith('.html'));

const LONGEST = 20_000; // milliseconds that a page may take on a busy machine

export async function startBrowser() {
  const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
  return {
    close: () => browser.close(),
    /** @returns a page with `complaints`, once its script has run */
    async open(address, options = {}) {
      const context = await browser.newContext({ viewport: { width: 1200, height: 900 }, ...options });
      const page = await context.newPage();
      page.setDefaultTimeout(LONGEST);
      page.complaints = [];
      page.scripted = options.javaScriptEnabled !== false;
      page.on('console', (message) => ['error', 'warning'].includes(message.type()) && page.complaints.push(message.text()));
      page.on('pageerror', (error) => page.complaints.push(error.message));
      page.on('request', (request) => /^(file|data|blob):/.test(request.url()) || page.complaints.push(`asked for ${request.url()}`));
      await this.go(page, address);
      return page;
    },
    /** The same page elsewhere: quicker than another one. */
    async go(page, address) {
      page.complaints.length = 0;
      await page.goto(new URL(address, folder).href);
      if (page.scripted) await page.waitForSelector('html[data-ready]', { state: 'attached' });
    },
    leave: (page) => page.context().close(),
  };
}
